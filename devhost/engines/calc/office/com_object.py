"""What every object of the model shares: members found by name, arguments, failures."""

import inspect

DISP_E_MEMBERNOTFOUND = 0x80020003
DISP_E_TYPEMISMATCH = 0x80020005
DISP_E_EXCEPTION = 0x80020009
DISP_E_UNKNOWNNAME = 0x80020006
DISP_E_BADINDEX = 0x8002000B
DISP_E_BADPARAMCOUNT = 0x8002000E
DISP_E_PARAMNOTOPTIONAL = 0x8002000F
E_INVALIDARG = 0x80070057
E_NOTIMPL = 0x80004001
E_OUTOFMEMORY = 0x8007000E
RPC_E_DISCONNECTED = 0x80010108

# The one code with which Excel reports nearly every refusal (run-time error 1004).
EXCEL_FAILURE = 0x800A03EC
EXCEL_OVERFLOW = 0x800A0006


class _Token:
    def __init__(self, name):
        self._name = name

    def __repr__(self):
        return self._name


MISSING = _Token("MISSING")
NULL = _Token("NULL")
# The object property that has no object now: a VT_DISPATCH that holds null.
NOTHING = _Token("NOTHING")


class ErrorValue:
    """An error in a cell: a VT_ERROR with this code."""

    def __init__(self, scode):
        self.scode = scode


class Date:
    """A serial date that travels as VT_DATE."""

    def __init__(self, serial):
        self.serial = serial


class Long64:
    """A whole number that travels as VT_I8 whatever its size."""

    def __init__(self, number):
        self.number = number


class Picture:
    """A picture as the bytes of a PNG file, for the client to put on its clipboard; `as_bitmap` or as a metafile.

    `size` is how much of it is meant, in pixels from the top left corner; all of it when left out.
    """

    def __init__(self, png, as_bitmap, size=None):
        self.png = png
        self.as_bitmap = as_bitmap
        self.size = size


class ImageFile:
    """The bytes of an image file that the client read from its clipboard."""

    def __init__(self, content):
        self.content = content


class List(list):
    """A one-dimensional array; `low` is the index of its first element."""

    def __init__(self, items, low=0):
        super().__init__(items)
        self.low = low


class Array:
    """A two-dimensional array; `rows` may hold fewer rows and columns than the sizes say, the rest is empty."""

    def __init__(self, rows, row_count=None, column_count=None):
        self.rows = rows
        self.row_count = len(rows) if row_count is None else row_count
        self.column_count = (len(rows[0]) if rows else 0) if column_count is None else column_count


class ComError(Exception):
    """Reported as DISP_E_EXCEPTION, with the code and the text in EXCEPINFO."""

    def __init__(self, text, scode=EXCEL_FAILURE):
        super().__init__(text)
        self.text = text
        self.scode = scode


class HResultError(Exception):
    """Reported as the call's own HRESULT."""

    def __init__(self, hresult, text=""):
        super().__init__("%08X %s" % (hresult, text))
        self.hresult = hresult


# Methods that only look something up.
LOOKUPS = {"item", "chartobjects", "characters", "axes"}


def plain_name(name):
    """The form in which names are compared: `AutoFit`, `autofit` and `auto_fit` are one name."""
    return name.replace("_", "").lower()


class _Call:
    """One callable side of a member: its function and what it accepts."""

    def __init__(self, function):
        self.function = function
        parameters = list(inspect.signature(function).parameters.values())[1:]
        self.names = [plain_name(p.name) for p in parameters]
        self.defaults = [p.default for p in parameters]
        self.required = sum(1 for p in parameters if p.default is inspect.Parameter.empty)

    def arrange(self, args, named):
        """The full positional list for positional and named arguments."""
        if len(args) > len(self.names):
            raise HResultError(DISP_E_BADPARAMCOUNT)
        values = list(args) + [MISSING] * (len(self.names) - len(args))
        for name, value in named.items():
            try:
                values[self.names.index(plain_name(name))] = value
            except ValueError:
                raise HResultError(DISP_E_UNKNOWNNAME, name) from None
        for index, value in enumerate(values):
            if value is MISSING:
                if self.defaults[index] is inspect.Parameter.empty:
                    raise HResultError(
                        DISP_E_PARAMNOTOPTIONAL if index < len(args) else DISP_E_BADPARAMCOUNT)
                values[index] = self.defaults[index]
        return values


class _Member:
    def __init__(self):
        self.get = self.put = self.call = None


class ComObject:
    """Base of the model's classes. A method named `get_x`, `put_x` or `call_x` makes the member `X`."""

    TYPE = ""
    # The member that DISPID 0 stands for.
    DEFAULT = None
    members = {}
    types = {}

    def __init_subclass__(cls):
        super().__init_subclass__()
        cls.members = {}
        for attribute in dir(cls):
            side, underscore, name = attribute.partition("_")
            if underscore and side in ("get", "put", "call") and name:
                member = cls.members.setdefault(plain_name(name), _Member())
                setattr(member, side, _Call(getattr(cls, attribute)))
        if cls.DEFAULT:
            cls.members["default"] = cls.members[plain_name(cls.DEFAULT)]
        if cls.TYPE:
            ComObject.types[cls.TYPE] = cls

    @classmethod
    def member_names(cls):
        """All names that callers may look up, in lower case."""
        return ["_default" if name == "default" else name for name in cls.members]

    def read(self, name, args=(), named=None):
        """Gets a property or calls a method; the host does not tell the two apart."""
        member = self.members.get(plain_name(name))
        call = member and (member.call or member.get)
        if not call:
            raise HResultError(DISP_E_MEMBERNOTFOUND, name)
        if member.call is None and len(args) > len(call.names):
            # Surplus arguments of a property belong to the default member of the object that it gives.
            owner = call.function(self, *call.arrange((), {}))
            if isinstance(owner, ComObject) and owner.DEFAULT:
                return owner.read(owner.DEFAULT, args, named)
            raise HResultError(DISP_E_BADPARAMCOUNT)
        return call.function(self, *call.arrange(args, named or {}))

    def write(self, name, args):
        member = self.members.get(plain_name(name))
        if member is None:
            raise HResultError(DISP_E_MEMBERNOTFOUND, name)
        if member.put is None:
            if len(args) > 1 and member.get is not None:
                return self.read(name, args[:-1]).write("_Default", args[-1:])
            raise ComError("Unable to set the %s property of the %s class" % (name, self.TYPE))
        value_of_put = args[-1] if args else MISSING
        return member.put.function(self, *member.put.arrange(list(args[:-1]) + [value_of_put], {}))

    @classmethod
    def may_change(cls, name, kind):
        """Whether the call may change what is shown. Callers may get a property as if it were a method."""
        member = cls.members.get(plain_name(name))
        return kind == "put" or bool(member and member.call and plain_name(name) not in LOOKUPS)

    def get_creator(self):
        # "XCEL" as a four-character code.
        return 0x5843454C

    def get_application(self):
        from office import application
        return application.Application()


def as_integer(value):
    """A whole number from what a caller may pass for one; floating-point values round half to even, as in COM."""
    if isinstance(value, bool):
        return -1 if value else 0
    if isinstance(value, int):
        return value
    if isinstance(value, float):
        return round(value)
    if isinstance(value, str):
        try:
            return round(float(value))
        except ValueError:
            pass
    raise HResultError(DISP_E_TYPEMISMATCH)


def as_number(value):
    if isinstance(value, (bool, int, float)):
        return float(value)
    if isinstance(value, str):
        try:
            return float(value)
        except ValueError:
            pass
    raise HResultError(DISP_E_TYPEMISMATCH)


def as_boolean(value):
    if isinstance(value, (bool, int, float)):
        return bool(value)
    if isinstance(value, str) and value.lower() in ("true", "false"):
        return value.lower() == "true"
    raise HResultError(DISP_E_TYPEMISMATCH)


def as_text(value):
    if isinstance(value, str):
        return value
    if isinstance(value, bool):
        return "True" if value else "False"
    if isinstance(value, (int, float)):
        return "%.15g" % value
    raise HResultError(DISP_E_TYPEMISMATCH)
