$printer = New-Object -ComObject Corvane.LogicalPrinter
$printer.PrinterName = "Office colour"
$printer.PortName = "IP_10.1.2.3"
$printer.ColorCapable = $true
$printer.DriverName = "Universal Driver"
$printer.Destination = "<Destination><Floor>2</Floor></Destination>"
"$($printer.PrinterName) on $($printer.PortName), colour: $($printer.ColorCapable)"

# A destination must be well-formed.
try {
    $printer.Destination = "second floor"
} catch [System.Runtime.InteropServices.COMException] {
    "{0:X} {1}" -f $_.Exception.ErrorCode, $_.Exception.Message
}
