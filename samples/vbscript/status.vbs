' Says what is the matter with a printer: its text, its severity, and each condition that holds.
' cscript //nologo status.vbs PRINTER
Option Explicit

If WScript.Arguments.Count <> 1 Then
    WScript.Echo "usage: cscript //nologo status.vbs PRINTER"
    WScript.Quit 2
End If

Dim printer, status
Set printer = CreateObject("Vorlane.Printer")
printer.Initialize WScript.Arguments(0)
Set status = printer.Status

Sub Tell(name, holds)
    If holds Then WScript.Echo "  " & name
End Sub

WScript.Echo printer.Name & ": " & status.Text
If status.Error Then WScript.Echo "  It needs somebody."
If status.Warning Then WScript.Echo "  It will need somebody soon."

Tell "Paused", status.Paused
Tell "Offline", status.Offline
Tell "Paper jam", status.PaperJam
Tell "Paper out", status.PaperOut
Tell "Paper low", status.PaperLow
Tell "Paper problem", status.PaperProblem
Tell "Manual feed", status.ManualFeed
Tell "Output full", status.OutputFull
Tell "Toner low", status.TonerLow
Tell "No toner", status.NoToner
Tell "Door open", status.DoorOpen
Tell "Out of memory", status.OutOfMemory
Tell "Not available", status.NotAvailable
Tell "User intervention required", status.UserInterventionRequired
Tell "Busy", status.Busy
Tell "I/O active", status.IOActive
Tell "Printing", status.Printing
Tell "Processing", status.Processing
Tell "Initializing", status.Initializing
Tell "Warming up", status.WarmingUp
Tell "Waiting", status.Waiting
Tell "Power save", status.PowerSave
Tell "Label present", status.LabelPresent
Tell "Printer paused", status.PrinterPaused
Tell "Ribbon low", status.RibbonLow
Tell "Ribbon out", status.RibbonOut
Tell "Ribbon error", status.RibbonError
Tell "Head open", status.HeadOpen
Tell "Head error", status.HeadError
Tell "Cutter error", status.CutterError
Tell "Battery low", status.BatteryLow
Tell "Battery charging", status.BatteryCharging

WScript.Echo "  " & status.OdometerPages & " pages, " & status.OdometerDistance & " mm"
