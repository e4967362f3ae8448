// Opens a printer, reads and changes it, and sends it a file.
// cscript //nologo printer.js PRINTER FILE

function main(printerName, fileName) {
    var printer = new ActiveXObject("Vorlane.Printer");

    // A name that the spooler does not know: the error says what went wrong.
    try {
        printer.Initialize("No such printer");
    } catch (failure) {
        WScript.Echo("A wrong name gives:  " + failure.description);
    }

    printer.Initialize(printerName);
    WScript.Echo("Name:                " + printer.Name);
    WScript.Echo("Server name:         " + printer.ServerName);
    WScript.Echo("Share name:          " + printer.ShareName);
    WScript.Echo("Port name:           " + printer.PortName);
    WScript.Echo("Model name:          " + printer.ModelName);
    WScript.Echo("Comment:             " + printer.Comment);
    WScript.Echo("Location:            " + printer.Location);
    WScript.Echo("Local:               " + printer.Local);
    WScript.Echo("Network:             " + printer.Network);
    WScript.Echo("Shared:              " + printer.Shared);

    printer.Comment = "Shipping labels, 100 x 60 mm";
    printer.Location = "Gate 7";
    WScript.Echo("Comment is now:      " + printer.Comment);
    WScript.Echo("Location is now:     " + printer.Location);

    // A refused file is no error: a script that has to know watches the job.
    printer.SendFile(fileName, "Shipping label");
    WScript.Echo("Sent as:             Shipping label");
}

if (WScript.Arguments.length !== 2) {
    WScript.Echo("usage: cscript //nologo printer.js PRINTER FILE");
    WScript.Quit(2);
}
main(WScript.Arguments(0), WScript.Arguments(1));
