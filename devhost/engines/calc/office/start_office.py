#!/usr/bin/python3
"""Runs a private LibreOffice that serves Excel's object model on a local port.

Prints one JSON line, {"port": N, "pid": P}, when it is ready, and serves until its standard input closes or it gets
SIGTERM or SIGINT; the office ends with it, however it ends. Exit status 0 when the office was ended on purpose.
"""

import argparse
import ctypes
import json
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import threading
import time
import uuid

import uno
from com.sun.star.beans import NamedValue
from com.sun.star.connection import NoConnectException

HERE = pathlib.Path(__file__).resolve().parent
START_LIMIT = 90.0
STOP_LIMIT = 10.0
# The office's way of saying "start me again", on the first use of a profile.
RESTART_WANTED = 81
PR_SET_PDEATHSIG = 1

# No lock files beside the user's workbooks, US English whatever the environment says, and nothing that asks.
SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry" xmlns:xs="http://www.w3.org/2001/XMLSchema"
 xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="UseDocumentOOoLockFile"
 oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Office.Common/Misc"><prop oor:name="FirstRun"
 oor:op="fuse"><value>false</value></prop></item>
<item oor:path="/org.openoffice.Setup/L10N"><prop oor:name="ooSetupSystemLocale"
 oor:op="fuse"><value>en-US</value></prop></item>
<item oor:path="/org.openoffice.Office.Linguistic/General"><prop oor:name="DefaultLocale"
 oor:op="fuse"><value>en-US</value></prop></item>
<item oor:path="/org.openoffice.Office.Recovery/AutoSave"><prop oor:name="Enabled"
 oor:op="fuse"><value>false</value></prop></item>
</oor:items>
"""


def office_program():
    launcher = shutil.which("soffice") or shutil.which("libreoffice")
    if not launcher:
        raise RuntimeError("LibreOffice is not installed (no soffice on the path)")
    # Beside the launcher script; started directly so that the process started is the office itself.
    program = pathlib.Path(launcher).resolve().parent / "soffice.bin"
    if not program.exists():
        raise RuntimeError("no soffice.bin beside %s" % program.parent)
    return str(program)


def die_with_parent():
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGKILL)


class Office:
    """The office process and the connection through which it is told to load the server and to end."""

    def __init__(self, profile):
        self._profile = pathlib.Path(profile).resolve()
        self._pipe = "qv-" + uuid.uuid4().hex
        self._log = None
        self._process = None
        self._desktop = None

    @property
    def pid(self):
        return self._process.pid

    def start(self):
        user = self._profile / "user"
        if not user.exists():
            user.mkdir(parents=True)
            (user / "registrymodifications.xcu").write_text(SETTINGS, encoding="utf-8")
        self._log = open(self._profile / "office.log", "ab")
        self._spawn()
        # Resolving can block for good on a half-started office; killing it is what wakes the call.
        watchdog = threading.Timer(START_LIMIT, self._kill)
        watchdog.daemon = True
        watchdog.start()
        try:
            return self._load_server(self._connect())
        finally:
            watchdog.cancel()

    def _spawn(self):
        environment = dict(os.environ, LC_ALL="C.UTF-8", SAL_USE_VCLPLUGIN="svp", PYTHONDONTWRITEBYTECODE="1")
        environment.pop("DISPLAY", None)
        self._process = subprocess.Popen(
            [
                office_program(), "--headless", "--invisible", "--norestore", "--nologo", "--nodefault",
                "--nofirststartwizard", "--accept=pipe,name=%s;urp;" % self._pipe,
                "-env:UserInstallation=" + self._profile.as_uri()
            ],
            stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log, env=environment, start_new_session=True,
            preexec_fn=die_with_parent)

    def _connect(self):
        local = uno.getComponentContext()
        resolver = local.ServiceManager.createInstanceWithContext("com.sun.star.bridge.UnoUrlResolver", local)
        restarts = 0
        deadline = time.monotonic() + START_LIMIT
        while time.monotonic() < deadline:
            try:
                return resolver.resolve("uno:pipe,name=%s;urp;StarOffice.ComponentContext" % self._pipe)
            except NoConnectException:
                status = self._process.poll()
                if status == RESTART_WANTED and restarts < 3:
                    restarts += 1
                    self._spawn()
                elif status is not None:
                    raise RuntimeError("the office ended with status %d, see %s" % (status, self._log.name))
                time.sleep(0.02)
        raise RuntimeError("the office did not answer within %d seconds" % START_LIMIT)

    def _load_server(self, context):
        manager = context.ServiceManager
        self._desktop = manager.createInstanceWithContext("com.sun.star.frame.Desktop", context)
        loader = manager.createInstanceWithContext("com.sun.star.loader.Python", context)
        component = HERE / "server_component.py"
        factory = loader.activate("quorvantis.devhost.CalcObjectServer", "", component.as_uri(), None)
        job = factory.createInstanceWithContext(context)
        return job.execute((NamedValue("Folder", str(HERE.parent)),))

    def wait(self, seconds):
        """The office's exit status, or None while it runs."""
        try:
            return self._process.wait(seconds)
        except subprocess.TimeoutExpired:
            return None

    def stop(self):
        if self._process is None:
            return
        if self._process.poll() is None:
            # Asking can block as well when the office hangs, so it is asked from aside.
            threading.Thread(target=self._terminate, daemon=True).start()
            if self.wait(STOP_LIMIT) is None:
                self._kill()
                self._process.wait()
        self._log.close()

    def _terminate(self):
        try:
            self._desktop.terminate()
        except Exception:  # pylint: disable=broad-except
            # The connection often breaks before the answer is back; the exit status tells whether it worked.
            pass

    def _kill(self):
        if self._process.poll() is None:
            self._process.kill()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--profile", help="folder of the office's own settings; a temporary one when left out")
    options = parser.parse_args()
    temporary = None if options.profile else tempfile.mkdtemp(prefix="qv-office-")
    ended = threading.Event()
    for number in (signal.SIGTERM, signal.SIGINT):
        signal.signal(number, lambda *_: ended.set())
    office = Office(options.profile or temporary)
    try:
        port = office.start()
        print(json.dumps({"port": port, "pid": office.pid}), flush=True)
        threading.Thread(target=lambda: (sys.stdin.buffer.read(), ended.set()), daemon=True).start()
        while not ended.wait(0.1):
            if office.wait(0) is not None:
                print("the office ended by itself", file=sys.stderr)
                return 1
        return 0
    except RuntimeError as error:
        print(error, file=sys.stderr)
        return 1
    finally:
        office.stop()
        if temporary:
            shutil.rmtree(temporary, ignore_errors=True)


if __name__ == "__main__":
    status = main()
    # The bridge's own threads may still wait for the office that is gone.
    sys.stdout.flush()
    os._exit(status)
