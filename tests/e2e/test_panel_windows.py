"""Several document windows, each with a pane of its own."""

from panel_driver import TWO_BATCHES, column, open_signed_in, sentences, slow_down, translate_entries, translated


def time_of_requests(service, topic):
    """When the first request about the topic began and the last one ended."""
    entries = [entry for entry in translate_entries(service) if topic in entry["body"]["texts"][0]]
    return entries[0]["startMs"], entries[-1]["endMs"]


def test_two_workbooks_are_translated_at_once_each_with_its_own_texts(start_window, echo_service, make_book):
    topics = {"first.xlsx": sentences(TWO_BATCHES, "garden"), "second.xlsx": sentences(TWO_BATCHES, "harbour")}
    first, second = (make_book(texts, name) for name, texts in topics.items())
    host = start_window(first)
    panels = [open_signed_in(host)]
    host.do("window", open=str(second))
    panels.append(open_signed_in(host))
    assert [panel.pane for panel in panels] == [1, 2]
    slow_down(echo_service, *(texts[20] for texts in topics.values()))
    for panel in panels:
        panel.start()
    for panel in panels:
        panel.wait_for_phase("done")
    garden, harbour = (time_of_requests(echo_service, topic) for topic in ("garden", "harbour"))
    assert garden[0] < harbour[1] and harbour[0] < garden[1], "one run has waited for the other"
    for number, texts in zip((1, 2), topics.values()):
        host.do("window", activate=number)
        assert column(host, TWO_BATCHES) == [translated(text) for text in texts]
    host.quit()


def test_a_second_window_of_a_workbook_is_refused_while_the_first_translates(start_window, echo_service, make_book):
    texts = sentences(TWO_BATCHES)
    host = start_window(make_book(texts))
    first = open_signed_in(host)
    host.do("window", new=True)
    second = open_signed_in(host)
    slow_down(echo_service, texts[20])
    first.start()
    first.wait_for_phase("translating")
    second.start()
    second.wait_for_phase("failed", timeout=5)
    assert second.text("error-text") == ("Another window is translating this workbook. Wait until it has finished, then "
                                         "try again.")
    first.wait_for_phase("done")
    assert column(host, TWO_BATCHES) == [translated(text) for text in texts]
    assert len(translate_entries(echo_service)) == 2
    host.quit()
