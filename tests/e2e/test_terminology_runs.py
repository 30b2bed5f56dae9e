"""Glossaries and instructions of a signed-in user on their way into every batch of a run, and runs that go on without."""

import json
import shutil

import pytest

from conftest import profile_path, save_column
from panel import press
from panel_driver import column, open_signed_in, translate_requests
from run_driver import LogTail, argument, end_of_run, event, post_from, run_from, start_message, token_of

TERMS = {"boiler": "caldera", "gear wheel": "rueda dentada", "Orion": "ORIÓN", "invoice": "factura", "valve": "válvula",
         "hinge": "bisagra", "harvest": "cosecha", "anvil": "yunque", "ledger": "libro mayor", "quay": "muelle"}
# Sixty texts make three batches; six of them hold the same term.
TEXTS = [f"Line {number} is about the {term} and little else" for number in range(1, 7) for term in TERMS]
DISABLED = {"source": "little else", "target": "NUNCA", "note": "", "enabled": False}
INSTRUCTION = "Write plainly.\nAddress the reader as \"usted\"."


def entry(source, target):
    return {"source": source, "target": target, "note": f"about {source}", "enabled": True}


def in_spanish(text):
    for source, target in TERMS.items():
        text = text.replace(source, target)
    return f"ES:{text}"


@pytest.fixture(scope="module")
def book_path(tmp_path_factory):
    return save_column(TEXTS, tmp_path_factory.mktemp("terms") / "book.xlsx")


@pytest.fixture(scope="module")
def panel(echo_window, running_echo_service, book_path):
    """The panel of a workbook of TEXTS, with somebody signed in who has a glossary and an instruction."""
    opened = open_signed_in(echo_window(book_path))
    unused = entry("zeppelin", "dirigible")
    for kind, name, content in (
            ("glossaries", "machines", {"entries": [DISABLED, unused, *(entry(*term) for term in TERMS.items())]}),
            ("instructions", "plain", {"content": INSTRUCTION})):
        running_echo_service.call("PUT", f"/v1/{kind}/{name}", {"name": name, **content}, token_of(opened))
    return opened


@pytest.fixture
def service(running_echo_service):
    running_echo_service.reset()
    return running_echo_service


def paths(service):
    return [request["path"] for request in service.requests()]


def expect_plain_run(panel, service, texts=TEXTS):
    bodies = translate_requests(service)
    assert len(bodies) == 3 and all("glossary" not in body and "instruction" not in body for body in bodies)
    assert column(panel.host, len(texts)) == [f"ES:{text}" for text in texts]


def test_terms_and_instruction_reach_every_batch_and_the_cells(panel, service):
    run_from(panel, glossaryIds=["machines"], globalInstructionId="plain", excelBilingualBelow=False)
    assert paths(service) == ["/v1/terminology/resolve"] + ["/v1/translate"] * 3
    question = service.requests()[0]["body"]
    assert (question["glossaryIds"], question["instructionId"], question["corpusTexts"]) == (["machines"], "plain", TEXTS)
    for body in translate_requests(service):
        assert body["instruction"] == INSTRUCTION
        assert {term["source"]: term["target"] for term in body["glossary"]} == TERMS
    assert column(panel.host, len(TEXTS)) == [in_spanish(text) for text in TEXTS]


def test_an_instruction_alone_is_resolved_without_the_texts(panel, service):
    run_from(panel, globalPresetId="plain", excelBilingualBelow=False)
    question = service.requests()[0]["body"]
    assert (question["glossaryIds"], question["instructionId"], question["corpusTexts"]) == ([], "plain", [])
    assert {(body["instruction"], "glossary" in body) for body in translate_requests(service)} == {(INSTRUCTION, False)}
    assert column(panel.host, 2) == [f"ES:{text}" for text in TEXTS[:2]]


def test_the_pages_own_requests_carry_them_too(panel, service):
    run_from(panel, glossaryIds=["machines"], globalInstructionId="plain", nativeTranslateViaJs=True)
    bodies = translate_requests(service)
    assert [(len(body["glossary"]), body["instruction"]) for body in bodies] == [(len(TERMS), INSTRUCTION)] * 3
    assert column(panel.host, 1) == [f"{TEXTS[0]}\n{in_spanish(TEXTS[0])}"]


REFUSE = "window.kept = window.kept ?? fetch, window.fetch = (to, how) => String(to).includes('terminology') ? " \
         "Promise.reject(new TypeError('refused')) : kept(to, how), 0"


def test_a_page_that_cannot_resolve_does_not_stop_the_run(panel, service):
    log = LogTail(panel.host)
    panel.value(REFUSE)
    run_from(panel, glossaryIds=["machines"], globalInstructionId="plain", excelBilingualBelow=False)
    panel.value("window.fetch = kept, 0")
    assert paths(service) == ["/v1/translate"] * 3
    expect_plain_run(panel, service)
    assert log.line("bridge resolve failed") == "bridge resolve failed, fallback empty"


def test_cancelling_ends_the_wait_for_a_silent_page(panel, service):
    panel.value("window.kept = window.kept ?? fetch, window.fetch = () => new Promise(() => {}), 0")
    post_from(panel, **start_message(accessToken=token_of(panel), glossaryIds=["machines"]))
    panel.host.wait('"terminologyResolveRequest"')
    post_from(panel, action="cancel")
    panel.host.wait("onCancelled()", timeout=5)
    panel.value("window.fetch = kept, 0")
    assert paths(service) == []


def test_ids_that_are_gone_add_nothing(panel, service):
    run_from(panel, glossaryIds=["gone"], globalInstructionId="gone too", excelBilingualBelow=False)
    assert paths(service)[0] == "/v1/terminology/resolve"
    expect_plain_run(panel, service)


@pytest.fixture
def local_store():
    """The user's local store, empty; what was in it before is put back."""
    folder = profile_path(r"AppData\Roaming\Quorvantis")
    kept = folder.with_name("Quorvantis before the test")
    if folder.exists():
        folder.rename(kept)
    yield folder
    shutil.rmtree(folder, ignore_errors=True)
    if kept.exists():
        kept.rename(folder)


def test_a_broken_file_in_the_local_store_harms_nobody(panel, service, local_store):
    glossaries, instructions = local_store / "glossaries", local_store / "instructions" / "global"
    glossaries.mkdir(parents=True)
    instructions.mkdir(parents=True)
    (glossaries / "broken.json").write_text('{"meta": {"name": "Broken"}, "entries": [{"source": "boi')
    (glossaries / "whole.json").write_text(json.dumps({"meta": {"name": "Whole", "updatedAt": "2026-01-02"},
                                                       "entries": [entry("boiler", "caldera"), DISABLED]}))
    (instructions / "bad.json").write_bytes(b"\xff\xfe\x00")
    log = LogTail(panel.host)
    post_from(panel, action="exportLocalSnapshot", requestId="snapshot-1")
    answer = event(panel.host, "QuorvantisTerminology._onResponse")
    assert answer == {"requestId": "snapshot-1", "ok": True, "data": {"instructions": [], "glossaries": [{
        "id": "whole", "name": "Whole", "updatedAt": "2026-01-02", "entries": [entry("boiler", "caldera"), DISABLED]}]}}
    skipped = [line.rsplit("\\", 1)[1] for line in log.lines() if "Local store skipped malformed" in line]
    assert sorted(skipped) == ["bad.json", "broken.json"]
    run_from(panel, glossaryIds=["broken"], excelBilingualBelow=False)
    expect_plain_run(panel, service)


def test_without_a_token_nobody_is_asked_for_terms(echo_host, book_path, service):
    host = echo_host(book_path)
    log = LogTail(host)
    host.post(**start_message(glossaryIds=["machines"], globalInstructionId="plain"))
    # The service takes no batch without a token either, and says so.
    assert argument(end_of_run(host))["code"] == "unauthorized"
    assert log.line("no accessToken") == "no accessToken, skip cloud terminology"
    assert not [entry for entry in host.scripts() if "terminologyResolveRequest" in entry["text"]]
    bodies = translate_requests(service)
    assert len(bodies) == 1 and not {"glossary", "instruction"} & set(bodies[0])
    host.quit()


def test_a_glossary_made_and_chosen_by_clicks_reaches_the_cells(panel, service):
    host = panel.host
    press(host, "btnGlossary")
    panel.wait_for_page("glossary")
    panel.click("#new")
    panel.click("#dialog-name")
    panel.type("Lines\n")
    panel.wait_for("!document.querySelector('dialog') && !document.getElementById('contents').hidden")
    panel.click("#new-source")
    panel.type("Line\tRenglón\n")
    panel.wait_for("document.querySelectorAll('#rows tr').length === 1")
    panel.wait_for("document.getElementById('save-state').dataset.state === 'saved'")
    press(host, "btnTranslateFullDoc")
    panel.wait_for("document.querySelectorAll('#term-glossaries input').length === 2")
    panel.click("#terms summary")
    panel.click("#term-glossaries input:not([value=machines])")
    service.reset()
    panel.start()
    panel.wait_for_phase("done", timeout=120)
    assert paths(service)[0] == "/v1/terminology/resolve"
    for body in translate_requests(service):
        assert [(term["source"], term["target"]) for term in body["glossary"]] == [("Line", "Renglón")]
    assert column(host, len(TEXTS)) == [f"{text}\nES:{text.replace('Line', 'Renglón')}" for text in TEXTS]
