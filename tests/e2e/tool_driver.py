"""Asks the add-in's workbook tools as a page does."""

import itertools
import json
import re

REPLY = re.compile(r"_onResponse\((.*)\);$", re.S)


class ToolDriver:
    """Called with a tool's name and arguments; gives the data of its reply."""

    def __init__(self, host):
        self.host = host
        self._numbers = itertools.count(1)

    def __call__(self, action, **arguments):
        request = f"tool-{next(self._numbers)}"
        self.host.post(action=action, requestId=request, **arguments)
        reply = json.loads(REPLY.search(self.host.wait(f'"requestId":"{request}"')).group(1))
        assert reply["ok"] is True
        return reply["data"]
