"""What a user reads when the service fails in a run, and the way out that is offered."""

import json

from panel_driver import column, open_signed_in, sentences, translate_entries, translated


def failing(status, body=None):
    return {"status": status, "body": body, "times": -1}


def wait_for_failure(panel, words, way_out):
    panel.wait_for(f"document.getElementById('run').dataset.phase === 'failed' && "
                   f"document.getElementById('error-text').innerText === {json.dumps(words)}")
    assert panel.text("run-title") == "Translation stopped"
    ways = "[...document.querySelectorAll('#error > a, #error > button')].filter((way) => !way.hidden).map((way) => way.id)"
    assert panel.value(ways) == [way_out]


def test_failures_are_told_in_words_and_trying_again_helps(start_window, echo_service, make_book):
    texts = sentences(3)
    host = start_window(make_book(texts))
    panel = open_signed_in(host)
    echo_service.fail_next(failing(402, {"code": "insufficient_credits", "message": "insufficient_credits"}))
    panel.start()
    wait_for_failure(panel, "Your credits are used up. Add credits or change the plan, then go on.", "error-account")
    echo_service.reset()
    echo_service.fail_next(failing(500, {"code": "engine_failed", "message": "engine failed"}))
    panel.start()
    wait_for_failure(panel, "The service has a problem. Try again in a few minutes.", "error-again")
    assert column(host, 3) == texts
    echo_service.reset()
    panel.click("#error-again")
    panel.wait_for_phase("done")
    assert column(host, 3) == [translated(text) for text in texts]
    host.quit()


def test_an_expired_sign_in_leads_to_signing_in_and_back(start_window, echo_service, make_book):
    texts = sentences(3)
    host = start_window(make_book(texts))
    panel = open_signed_in(host)
    echo_service.fail_next(failing(401))
    panel.start()
    wait_for_failure(panel, "Your sign-in has expired. Sign in again, then translate.", "error-sign-in")
    assert len(translate_entries(echo_service)) == 1
    assert panel.value("document.getElementById('start').disabled")
    echo_service.reset()
    panel.sign_in("Grace")
    panel.start()
    panel.wait_for_phase("done")
    assert column(host, 3) == [translated(text) for text in texts]
    token = panel.value("JSON.parse(localStorage['quorvantis.session']).token")
    # The record shows the end of a token only.
    assert {entry["headers"]["authorization"] for entry in translate_entries(echo_service)} == {f"Bearer …{token[-4:]}"}
    host.quit()
