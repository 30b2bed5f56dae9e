"""What the tests of the panel in a real browser share: texts, their translations, and the way into a run."""

from panel import FORM_READY, press

# Twenty texts make a batch.
TWO_BATCHES, THREE_BATCHES = 30, 60


def open_signed_in(host, button="btnTranslateFullDoc"):
    """The panel of the active window with somebody signed in and Spanish chosen."""
    panel = press(host, button)
    panel.wait_for(FORM_READY)
    if not panel.value("document.getElementById('sign-in').hidden"):
        panel.sign_in()
    panel.choose_target("Spanish", "es")
    return panel


def sentences(count, topic="garden"):
    """Different texts, long enough to be sent to the service."""
    return [f"The report with number {number} is about the {topic} in the summer" for number in range(1, count + 1)]


SLOW_TEXTS = sentences(THREE_BATCHES)


def translated(text, mark="ES"):
    """What the echo service and the layout of both languages make of a cell."""
    return f"{text}\n{mark}:{text}"


def column(host, count, sheet="Sheet"):
    """The values of column A from the top."""
    return [host.cell(sheet, f"A{row}")["value"] for row in range(1, count + 1)]


def translate_entries(service):
    """The record of what was asked for translation; `endMs` is None while a request is open."""
    return [entry for entry in service.requests() if entry["path"] == "/v1/translate"]


def translate_requests(service):
    return [entry["body"] for entry in translate_entries(service)]


def slow_down(service, *texts, delay_ms=6000):
    """The service takes some seconds over each batch that holds one of the texts: time to do something meanwhile."""
    service.fail_next(*({"match": text, "delayMs": delay_ms} for text in texts))
