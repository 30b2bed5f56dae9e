"""Looks for users' tokens and keys of the model proxy where none may be: in the logs and files of development hosts, and in
what their pages were told."""

import re

from devhost_client import Devhost, DevhostError

# Keys with more than the log may show of them, and tokens as the local service makes them.
SECRETS = re.compile(rb"qv_[0-9a-f]{6,}|dev-[\w-]{32}")


def secrets_in(content, known=()):
    """Those that stand in the bytes, the known ones among them, in UTF-8 or UTF-16."""
    # Without its zero bytes UTF-16 reads like UTF-8, as far as secrets go.
    content = content.replace(b"\0", b"")
    return set(SECRETS.findall(content)) | {secret for secret in known if secret in content}


def leaks(left, known=()):
    """What must not be, by name, in {name: content}."""
    found = {str(name): secrets_in(content, known) for name, content in left.items()}
    return {name: secrets for name, secrets in found.items() if secrets}


def files_below(folder):
    """What the files hold by path, but for the one folder where an agent finds its key."""
    return {path: path.read_bytes() for path in folder.rglob("*")
            if path.is_file() and path.parent.name != "opencode-workspace"}


class WatchedHost(Devhost):
    """A development host whose posted tokens, and what its pages are told, are kept beyond its end."""

    told = []
    tokens = set()
    _asked = False

    def post(self, **message):
        token = message.get("accessToken", "")
        if token and token.isascii():
            self.tokens.add(token.encode())
        return super().post(**message)

    def quit(self):
        self._keep_what_pages_are_told()
        return super().quit()

    def close(self, patience=20.0):
        self._keep_what_pages_are_told()
        super().close(patience)

    def _keep_what_pages_are_told(self):
        if self._asked or self.exit_code is not None:
            return
        self._asked = True
        try:
            items = self.do("scripts", timeout=10)["scripts"]
        except DevhostError:
            return
        # What the page itself says, and what it is told of who is signed in, may hold the token.
        self.told += (item["text"].encode("utf-8", "replace") for item in items
                      if item["kind"] != "message" and '"action":"accessToken"' not in item["text"])
