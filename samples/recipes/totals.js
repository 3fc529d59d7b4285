// Adds up the pages of print jobs by user and paper size.
//
//   cscript //nologo totals.js FILE...

var totals = {};
for (var i = 0; i < WScript.Arguments.length; ++i) {
    add(readFile(WScript.Arguments(i)));
}
for (var key in totals) {
    WScript.Echo(key + ": " + totals[key] + " pages");
}

// The print job of a UTF-8 or UTF-16 file.
function readFile(path) {
    var document = WScript.CreateObject("MSXML2.DOMDocument");
    document.async = false;
    document.preserveWhiteSpace = true;
    if (!document.load(path)) {
        throw new Error(path + ": not well-formed XML");
    }
    var job = new ActiveXObject("Corvane.PrintJob");
    job.Xml = document.documentElement.xml;
    return job;
}

function add(job) {
    var lines = job.JobContents.JobCopyLines;
    for (var i = 0; i < lines.Count; ++i) {
        var line = lines.Item(i);
        var key = job.UserName + ", " + paperOf(line);
        totals[key] = (totals[key] || 0) + line.PagesTotal;
    }
}

// The paper's name as the catalogue spells it: A4, a4 and iso_a4_210x297mm have one code.
function paperOf(line) {
    if (line.DBPaperSize === 0) {
        return line.PaperSize + " (unknown)";
    }
    var contents = new ActiveXObject("Corvane.JobContents");
    contents.GenerateContentsFromDBInfo(line.DBPaperSize + ",0,0,0,1", 1, 1, 1, 0);
    return contents.JobCopyLines.Item(0).PaperSize;
}
