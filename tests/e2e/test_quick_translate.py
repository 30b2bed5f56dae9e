"""Single texts: translated whatever a run does, answered one by one, and written into the selected cell."""

import json

import pytest

from conftest import save_sheets
from panel import wait_until
from panel_driver import SLOW_TEXTS, column, open_signed_in, slow_down, translate_requests, translated
from run_driver import event, post_from, start_message, token_of

# What "12.5", a formula and a locked cell make of an insertion stands on a sheet of its own.
OTHERS = [12.5, '="Sum: "&A1', "Locked", None]
COLLECT = "window.quick = {}, window.onQuickTranslateResult = (answer) => { quick[answer.requestId] = answer; }, 0"


@pytest.fixture(scope="module")
def opened(echo_window, tmp_path_factory):
    sheets = {"Sheet": SLOW_TEXTS, "Others": OTHERS}
    return open_signed_in(echo_window(save_sheets(sheets, tmp_path_factory.mktemp("quick") / "book.xlsx")))


@pytest.fixture
def panel(opened, running_echo_service):
    running_echo_service.reset()
    opened.value(COLLECT)
    return opened


def ask(panel, request_id, text, **members):
    post_from(panel, action="quickTranslate", requestId=request_id, text=text, **members)


def answer(panel, request_id):
    return panel.wait_for(f"quick[{json.dumps(request_id)}]")


def good(request_id, translation):
    return {"requestId": request_id, "ok": True, "translation": translation}


def test_one_text_is_translated_with_the_defaults_and_nothing_else(panel, running_echo_service):
    ask(panel, 'a "quoted" id', 'One\n"line"')
    assert answer(panel, 'a "quoted" id') == good('a "quoted" id', 'ZH:One\n"line"')
    body, = translate_requests(running_echo_service)
    members = {name: body.get(name) for name in ("texts", "sourceLang", "targetLang", "usageKind", "clientProduct",
                                                 "glossary", "instruction")}
    assert members == {"texts": ['One\n"line"'], "sourceLang": "auto", "targetLang": "zh-CN", "usageKind": "translate_quick",
                       "clientProduct": "excel", "glossary": None, "instruction": None}


def test_languages_instruction_and_the_pages_token_are_used(panel, running_echo_service):
    ask(panel, "full", "One", sourceLang="en", targetLang="fr", instruction="Be brief.", accessToken=token_of(panel))
    assert answer(panel, "full") == good("full", "FR:One")
    body, = translate_requests(running_echo_service)
    assert (body["sourceLang"], body["targetLang"], body["instruction"]) == ("en", "fr", "Be brief.")
    ask(panel, "stranger", "One", accessToken="not-of-this-service")
    assert answer(panel, "stranger") == {"requestId": "stranger", "ok": False, "error": "登录已失效，请重新登录"}
    ask(panel, "own", "One")
    assert answer(panel, "own")["ok"]


def test_ten_at_once_are_answered_by_their_ids_whoever_comes_first(panel, running_echo_service):
    running_echo_service.fail_next({"match": "Number 0", "delayMs": 1500})
    for number in range(10):
        ask(panel, f"id{number}", f"Number {number}", targetLang="es")
    for number in range(9, -1, -1):
        assert answer(panel, f"id{number}") == good(f"id{number}", f"ES:Number {number}")
    assert panel.value("Object.keys(quick).at(-1)") == "id0" and panel.value("Object.keys(quick).length") == 10


@pytest.mark.parametrize("fault, error", [
    ({"status": 402}, "积分不足\u00ef\u00bc\u008c请充值或升级套餐后继续翻译。"),
    ({"status": 401}, "登录已失效，请重新登录"),
    ({"status": 500}, "HTTP request failed"),
    ({"status": 429, "body": {"code": "rate_limited", "message": "slow \"down\""}}, "slow \"down\""),
    ({"countMismatch": True}, "Translation count mismatch"),
    ({"dropMidBody": True}, "HTTP request failed"),
])
def test_a_failure_is_answered_once_and_not_tried_again(panel, running_echo_service, fault, error):
    running_echo_service.fail_next(fault)
    ask(panel, "failing", "One")
    assert answer(panel, "failing") == {"requestId": "failing", "ok": False, "error": error}
    assert len(translate_requests(running_echo_service)) == 1


def test_a_run_and_single_texts_go_on_beside_each_other(panel, running_echo_service):
    host = panel.host
    slow_down(running_echo_service, SLOW_TEXTS[20])
    post_from(panel, **start_message(accessToken=token_of(panel)))
    panel.wait_for_count(20)
    ask(panel, "beside", "While it runs", targetLang="es")
    assert answer(panel, "beside") == good("beside", "ES:While it runs")
    assert panel.phase() == "translating"
    assert host.cell("Sheet", "A21")["value"] == SLOW_TEXTS[20]
    panel.wait_for_phase("done")
    assert column(host, len(SLOW_TEXTS)) == [translated(text) for text in SLOW_TEXTS]
    assert "While it runs" not in {text for body in translate_requests(running_echo_service)
                                   if body["usageKind"] != "translate_quick" for text in body["texts"]}


def write(panel, mode, text, sheet="Others", address="A1"):
    panel.host.do("select", sheet=sheet, address=address)
    post_from(panel, action="quickTranslateWrite", mode=mode, text=text)


def expect_cell(panel, address, value):
    wait_until(panel.host, lambda: panel.host.cell("Others", address)["value"] == value, f"{value!r} in {address}")


def test_texts_are_written_into_the_top_left_cell_of_the_selection(panel):
    for mode, address, text, cell, value in (
            ("insert", "A1", "doce", "A1", "12.5\ndoce"),
            ("insert", "A2", "total", "A2", "Sum: 12.5\ndoce\ntotal"),
            ("insert", "A4", "solo", "A4", "solo"),
            ("replace", "C4:D9,E20", "=nuevo", "C4", "=nuevo"),
            ("insert", "C4", "y más", "C4", "=nuevo\ny más"),
            ("replace", "C4", "2026-01-02", "C4", "2026-01-02")):
        write(panel, mode, text, address=address)
        expect_cell(panel, cell, value)
    for mode, text in (("append", "no"), ("replace", "")):
        write(panel, mode, text, address="C4")
    write(panel, "replace", "last", address="E1")
    expect_cell(panel, "E1", "last")
    assert panel.host.cell("Others", "C4")["value"] == "2026-01-02"
    assert panel.host.cell("Others", "D9")["value"] is None


def test_a_locked_cell_keeps_its_text_and_the_user_is_told(panel):
    message = "目标单元格已锁定，无法写入译文。请解锁单元格或撤销工作表保护后重试。"
    host = panel.host
    host.do("protect", sheet="Others", on=True)
    try:
        for mode in ("replace", "insert"):
            write(panel, mode, "no", address="A3")
            assert event(host, "onSheetWriteBlocked") == {"message": message}
            assert host.cell("Others", "A3")["value"] == "Locked"
    finally:
        host.do("protect", sheet="Others", on=False)
    write(panel, "replace", "Open", address="A3")
    expect_cell(panel, "A3", "Open")
