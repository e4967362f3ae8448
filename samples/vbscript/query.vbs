' Puts a question to the device and shows its answer as text and as bytes.
' cscript //nologo query.vbs PRINTER QUESTION
Option Explicit

If WScript.Arguments.Count <> 2 Then
    WScript.Echo "usage: cscript //nologo query.vbs PRINTER QUESTION"
    WScript.Quit 2
End If

Dim printer, port, command, number, response
Set printer = CreateObject("Vorlane.Printer")
printer.Initialize WScript.Arguments(0)
Set port = printer.Port
WScript.Echo "Port:         " & port.Name & ", " & port.Description
WScript.Echo "Disconnected: " & port.Disconnected

Set command = CreateObject("Vorlane.QueryCommand")
command.Text = WScript.Arguments(1)
command.ReceiveStartTimeout = 5000
WScript.Echo "Sent:         " & command.Hexadecimal & "  " & command.Text

number = port.StartQuery(command)
port.WaitForQuery number
Set response = port.GetQueryResponse(number)
If response.Failed Or Not response.Responded Then
    WScript.Echo "Query " & number & " has failed"
    WScript.Quit 1
End If
WScript.Echo "Text:         " & Replace(response.Text, vbCrLf, "")
WScript.Echo "Hexadecimal:  " & response.Hexadecimal
