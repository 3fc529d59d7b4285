// Finds words that the catalogue does not know before they get lost.

var contents = new ActiveXObject("Corvane.JobContents");
show("A4,Duplex,Color,PCL6");
show("A44,Duplex,PCL66,Color");

// The arguments in the middle are results that JScript cannot receive.
function show(words) {
    var unknown = contents.MatchAttributes(words, "", "", "", "", "", false);
    WScript.Echo(words + ": " + (unknown || "all known"));
}

var line = new ActiveXObject("Corvane.CopyLine");
line.PaperSize = "A44";
line.Attributes = "Duplex,color";
WScript.Echo("Paper code " + line.DBPaperSize + ", attribute code " + line.DBAttributes);
