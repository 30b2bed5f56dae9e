"""The piece that the office loads: a job whose execution starts the object server and gives its port."""

import sys

import unohelper
from com.sun.star.task import XJob

IMPLEMENTATION = "quorvantis.devhost.CalcObjectServer"


class ObjectServerJob(unohelper.Base, XJob):
    def __init__(self, context):
        self._context = context

    def execute(self, arguments):
        folder = next(item.Value for item in arguments if item.Name == "Folder")
        sys.dont_write_bytecode = True
        if folder not in sys.path:
            sys.path.insert(0, folder)
        from office import calc, object_server
        calc.attach(self._context)
        return object_server.serve()


g_ImplementationHelper = unohelper.ImplementationHelper()
g_ImplementationHelper.addImplementation(ObjectServerJob, IMPLEMENTATION, ("com.sun.star.task.Job",))
