Dim printer

Set printer = CreateObject("Corvane.LogicalPrinter")
printer.PrinterName = "Office colour"
printer.PortName = "IP_10.1.2.3"
printer.ColorCapable = True
printer.DriverName = "Universal Driver"
printer.Destination = "<Destination><Floor>2</Floor></Destination>"
WScript.Echo printer.PrinterName & " on " & printer.PortName & ", colour: " & printer.ColorCapable

' A destination must be well-formed.
On Error Resume Next
printer.Destination = "second floor"
WScript.Echo Hex(Err.Number) & " " & Err.Description
