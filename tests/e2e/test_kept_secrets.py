"""The search for secrets that ends each run finds them wherever they are."""

import pytest

from kept_secrets import files_below, leaks

KEY = "qv_" + "0123456789abcdef" * 4
TOKEN = "dev-AbC_dEf-0123456789AbC_dEf-012345"


@pytest.mark.parametrize("secret", [KEY, KEY[:9], TOKEN, "posted-token"])
@pytest.mark.parametrize("encoding", ["utf-8", "utf-16-le", "utf-16"])
def test_a_planted_secret_is_found(tmp_path, secret, encoding):
    log = tmp_path / "deeper" / "trace.log"
    log.parent.mkdir()
    log.write_bytes(f"[LlmProxy] auth header {secret}\r\n".encode(encoding))
    assert leaks(files_below(tmp_path), {b"posted-token"}) == {str(log): {secret.encode()}}


def test_what_a_log_may_say_and_an_agents_own_configuration_are_no_leaks(tmp_path):
    workspace = tmp_path / "opencode-workspace"
    workspace.mkdir()
    (workspace / "opencode.json").write_text(KEY)
    (tmp_path / "trace.log").write_bytes(f"LLM Proxy token generated prefix={KEY[:8]}\r\n".encode("utf-16-le"))
    assert leaks(files_below(tmp_path)) == {}
