"""One client's calls, carried out on the model.

Requests, one JSON object a line; each may carry "release": [handles that the client has let go]:
  {"op":"hello","style":"excel"|"wps","window":n}    the members of every class, and from then on that host's manners
  {"op":"invoke","object":h,"kind":"get"|"call"|"any"|"put","member":"…","args":[…],"named":{…}}
  {"op":"engine","do":"…","with":{…}}                an operation beside the model, see engine_operations
  {"op":"count"}                                     objects that the client holds, the Application among them
Answers: {"r":value} or {"hr":code,"scode":code,"text":"…"}, with "events" when the sheet or the selection changed and
"changed" after a call that may have changed what is shown.
"""

import json
import traceback

from com.sun.star.lang import DisposedException
from com.sun.star.uno import RuntimeException

from office import application, calc, engine_operations, wire, wps
from office.com_object import (DISP_E_EXCEPTION, DISP_E_UNKNOWNNAME, E_NOTIMPL, EXCEL_FAILURE, RPC_E_DISCONNECTED,
                               ComError, ComObject, HResultError)


class Session:
    def __init__(self):
        self._handles = wire.Handles(application.Application())
        self._changed = False

    def answer(self, line):
        """The answer line to one request line. Never raises for what a client may send."""
        self._changed = False
        try:
            request = json.loads(line)
            self._handles.release(request.get("release", ()))
            reply = {"r": self._perform(request)}
        except ComError as error:
            reply = {"hr": DISP_E_EXCEPTION, "scode": error.scode, "text": error.text}
        except HResultError as error:
            reply = {"hr": error.hresult, "text": str(error)}
        except DisposedException:
            reply = _gone()
        except RuntimeException as error:
            reply = self._calc_failure(request, error)
        except Exception as error:  # pylint: disable=broad-except
            traceback.print_exc()
            reply = _failure("%s: %s" % (type(error).__name__, str(error)[:300]))
        if self._changed:
            reply["changed"] = True
        events = calc.take_events()
        if events:
            reply["events"] = events
        return wire.encode_line(reply, self._handles)

    def _calc_failure(self, request, error):
        """Calc's own refusals carry no code that Excel's callers would know."""
        document = getattr(self._handles.get(request.get("object", 1)), "document", None)
        if document is not None and not any(opened == document for opened in calc.documents()):
            return _gone()
        return _failure(error.Message or type(error).__name__)

    def _perform(self, request):
        operation = request.get("op")
        if operation == "invoke":
            return self._invoke(request)
        if operation == "hello":
            return self._hello(request)
        if operation == "engine":
            return engine_operations.perform(request["do"], request.get("with", {}))
        if operation == "count":
            return len(self._handles)
        raise HResultError(E_NOTIMPL, "unknown operation %r" % operation)

    def _invoke(self, request):
        target = self._handles.get(request["object"])
        name = request["member"]
        if not wps.offers(target.TYPE, name):
            raise HResultError(DISP_E_UNKNOWNNAME, name)
        args = [wire.decode(value, self._handles) for value in request.get("args", ())]
        kind = request["kind"]
        self._changed = target.may_change(name, kind)
        if kind == "put":
            target.write(name, args)
            return None
        wps.check_kind(target.TYPE, name, kind)
        named = {key: wire.decode(value, self._handles) for key, value in request.get("named", {}).items()}
        return target.read(name, args, named)

    @staticmethod
    def _hello(request):
        """Sets the host's manners and tells the members of every class, in lower case."""
        calc.Host.style = request.get("style", "excel")
        calc.Host.window_handle = request.get("window", calc.Host.window_handle)
        return {
            name: sorted(member for member in cls.member_names() if wps.offers(name, member))
            for name, cls in ComObject.types.items()
        }


def _gone():
    return {"hr": RPC_E_DISCONNECTED, "text": "The object has been closed."}


def _failure(text):
    return {"hr": DISP_E_EXCEPTION, "scode": EXCEL_FAILURE, "text": text}
