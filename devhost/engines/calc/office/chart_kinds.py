"""The kinds of chart that Calc draws as Excel does, by Excel's numbers."""

from office.com_object import E_INVALIDARG, ComError, HResultError, as_integer

COLUMN = 51
# Columns, bars, lines, pies.
KINDS = {
    COLUMN: ("com.sun.star.chart.BarDiagram", {"Vertical": False}),
    57: ("com.sun.star.chart.BarDiagram", {"Vertical": True}),
    4: ("com.sun.star.chart.LineDiagram", {}),
    5: ("com.sun.star.chart.PieDiagram", {}),
}


def require(kind):
    if as_integer(kind) not in KINDS:
        raise HResultError(E_INVALIDARG, "a chart of a type that this host does not know")


def set_kind(chart, kind):
    require(kind)
    service, settings = KINDS[as_integer(kind)]
    chart.Diagram = chart.createInstance(service)
    for name, value in settings.items():
        setattr(chart.Diagram, name, value)


def number_of(chart):
    diagram = chart.Diagram
    for number, (service, settings) in KINDS.items():
        if diagram.getDiagramType() == service and \
                all(getattr(diagram, name) == value for name, value in settings.items()):
            return number
    raise ComError("The chart is of a type that this host does not know.")
