"""Excel's object model on LibreOffice Calc, run inside the office process."""
