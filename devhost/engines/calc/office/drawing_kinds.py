"""What kind of shape Calc's drawing objects are, by Excel's numbers (MsoShapeType)."""

AUTO_SHAPE, CHART, COMMENT, FREEFORM, GROUP, OLE_OBJECT, FORM_CONTROL, LINE, PICTURE, MEDIA, TEXT_BOX = \
    1, 3, 4, 5, 6, 7, 8, 9, 13, 16, 17

TYPES = {
    "Caption": COMMENT,
    "ClosedBezier": FREEFORM,
    "ClosedFreeHand": FREEFORM,
    "Control": FORM_CONTROL,
    "GraphicObject": PICTURE,
    "Group": GROUP,
    "Line": LINE,
    "Media": MEDIA,
    "OLE2": OLE_OBJECT,
    "OpenBezier": FREEFORM,
    "OpenFreeHand": FREEFORM,
    "PolyLine": FREEFORM,
    "PolyPolygon": FREEFORM,
    "Text": TEXT_BOX,
}
NAMES = {CHART: "Chart", COMMENT: "Comment", FREEFORM: "Freeform", GROUP: "Group", LINE: "Straight Connector",
         OLE_OBJECT: "Object", PICTURE: "Picture", TEXT_BOX: "TextBox"}
# Class of what Selection gives for one such shape.
SELECTED_CLASSES = {CHART: "ChartArea", GROUP: "GroupObject", LINE: "Line", OLE_OBJECT: "OLEObject",
                    PICTURE: "Picture", TEXT_BOX: "TextBox"}
CHART_DOCUMENT = "com.sun.star.chart.ChartDocument"


def chart_of(shape):
    """The chart document inside a shape, or None."""
    if shape.ShapeType != "com.sun.star.drawing.OLE2Shape":
        return None
    model = shape.Model
    return model if model is not None and model.supportsService(CHART_DOCUMENT) else None


def kind_of(shape):
    if chart_of(shape) is not None:
        return CHART
    name = shape.ShapeType.removeprefix("com.sun.star.drawing.").removesuffix("Shape")
    if name == "Connector":
        return LINE if shape.EdgeKind.value == "LINE" else AUTO_SHAPE
    return TYPES.get(name, AUTO_SHAPE)


def name_of(shape, neighbours):
    """The shape's name; one without gets its kind and its number among such neighbours."""
    if shape.Name:
        return shape.Name
    kind = kind_of(shape)
    number = 0
    for other in neighbours:
        number += kind_of(other) == kind
        if other == shape:
            break
    return "%s %d" % (NAMES.get(kind, "Shape"), number)


def members(container):
    """The shapes of a sheet's page or of a group, from the bottom to the top."""
    return [container.getByIndex(index) for index in range(container.Count)]
