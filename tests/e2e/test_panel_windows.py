"""Several document windows, each with a pane of its own."""

from panel_driver import TWO_BATCHES, column, open_signed_in, sentences, slow_down, translate_requests, translated


def test_two_workbooks_are_translated_at_once_each_with_its_own_texts(start_window, echo_service, make_book):
    topics = {"first.xlsx": sentences(TWO_BATCHES, "garden"), "second.xlsx": sentences(TWO_BATCHES, "harbour")}
    first, second = (make_book(texts, name) for name, texts in topics.items())
    host = start_window(first)
    panels = [open_signed_in(host)]
    host.do("window", open=str(second))
    panels.append(open_signed_in(host))
    assert [panel.pane for panel in panels] == [1, 2]
    # Both runs are still busy with their second batch when the other one begins.
    slow_down(echo_service, *(texts[20] for texts in topics.values()))
    for panel in panels:
        panel.start()
        panel.wait_for_count(20)
    assert [panel.phase() for panel in panels] == ["translating"] * 2
    for panel in panels:
        panel.wait_for_phase("done")
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
    first.wait_for_count(20)
    second.start()
    second.wait_for_phase("failed", timeout=5)
    assert second.text("error-text") == ("Another window is translating this workbook. Wait until it has finished, then "
                                         "try again.")
    assert first.phase() == "translating"
    first.wait_for_phase("done")
    assert column(host, TWO_BATCHES) == [translated(text) for text in texts]
    assert len(translate_requests(echo_service)) == 2
    host.quit()
