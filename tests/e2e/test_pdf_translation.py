"""The ribbon opens the service's page for PDF files in the user's own browser, and the page translates one."""

import json
import os
import subprocess

import pytest

from conftest import ROOT
from devhost_client import Devhost
from panel import wait_until
from paper import text_pdf

PARAGRAPHS = ["#The yearly report",
              "The company sold more houses in the summer than in the winter. The prices of the houses were high, and "
              "the people of the city bought them because they wanted a garden.",
              "#The garden",
              "The garden of the company is very large."]


@pytest.fixture
def opened_page(service, welcomed, tmp_path):
    """The address that a press of the ribbon's button gives to the system's browser, which writes it down instead."""
    note = tmp_path / "opened.txt"
    folder = tmp_path / "bin"
    folder.mkdir()
    browser = folder / "xdg-open"
    browser.write_text(f'#!/bin/sh\nprintf "%s" "$1" >"{note}"\n')
    browser.chmod(0o755)
    host = Devhost("--engine", "memory", "--service", service.url, "--authority", service.authority, "--no-pane",
                   log_path=tmp_path / "devhost.log",
                   env={"QV_SKIP_BUILD": "1", "PATH": f"{folder}:{os.environ['PATH']}"})
    try:
        host.press("btnPdfTranslate")
        yield wait_until(host, lambda: note.exists() and note.read_text(), "the browser", 30)
    finally:
        host.close()


def test_a_pdf_is_read_side_by_side_on_the_page_that_the_ribbon_opens(opened_page, service, tmp_path):
    assert opened_page == f"{service.url}/panel/web/webtranslate.html?tool=pdftr"
    script = ROOT / "service" / "testing" / "translate_pdf.js"
    run = subprocess.run(["node", script, opened_page, text_pdf(PARAGRAPHS, tmp_path)], capture_output=True, text=True,
                         timeout=150)
    assert run.returncode == 0, run.stderr
    shown = json.loads(run.stdout)
    assert (shown["problem"], shown["problems"]) == ("", [])
    assert shown["title"] == "paper.pdf · pages: 1 of 1"
    assert [pair["original"] for pair in shown["pairs"]] == [text.removeprefix("#") for text in PARAGRAPHS]
    assert [pair["isHeading"] for pair in shown["pairs"]] == [True, False, True, False]
    translations = [pair["translation"] for pair in shown["pairs"]]
    assert translations[0] == "El informe anual"
    assert "El jardín de la empresa es muy grande" in translations[3]
    assert all(pair["isBeside"] for pair in shown["pairs"])
    assert all(text in shown["kept"] for text in translations)
