"""The socket on which the object model is served: one JSON line a call, one JSON line an answer."""

import socket
import threading

from office.session import Session

# Longer requests than any test writes; a client that sends more is not ours.
MAX_LINE = 256 * 1024 * 1024


def serve():
    """Starts serving on a free port of 127.0.0.1 and returns the port."""
    listener = socket.socket()
    listener.bind(("127.0.0.1", 0))
    listener.listen(4)
    threading.Thread(target=_accept, args=(listener,), daemon=True).start()
    return listener.getsockname()[1]


def _accept(listener):
    while True:
        connection, _ = listener.accept()
        connection.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
        threading.Thread(target=_converse, args=(connection,), daemon=True).start()


def _converse(connection):
    session = Session()
    with connection, connection.makefile("rb", buffering=1 << 16) as lines:
        while True:
            try:
                line = lines.readline(MAX_LINE)
                if not line.endswith(b"\n"):
                    return
                connection.sendall(session.answer(line))
            except OSError:
                return
