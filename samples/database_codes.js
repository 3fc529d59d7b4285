// Job contents in a database: writes their codes into rows, rebuilds the contents from the rows, and shows what
// survives and what is lost.
//
//   cscript //nologo database_codes.js
//
// The library must be registered (regsvr32 Tarnwick.dll). Exit code: 0, or 1 with a message if a step fails.

var exitCode = 1;
try {
    main();
    exitCode = 0;
} catch (error) {
    WScript.Echo("Failed: " + error.message);
}
WScript.Quit(exitCode);

function main() {
    // Page counter reports: words, originals, copies, pages, sheets.
    var reports = [
        ["A4,Duplex,B&W,PostScript", 12, 2, 24, 12],
        ["A3,Duplex,Color,PCL6,Staple,Punch", 32, 10, 320, 80],
        ["Letter,Simplex,Color,XPS", 44, 1, 44, 44]
    ];
    for (var i = 0; i < reports.length; i++) {
        keepAndRebuild(reports[i]);
    }
    blankPagesBecomeBlackAndWhite();
    unusableRowsAreLeftOut();
    WScript.Echo("All " + (reports.length + 2) + " rows agree.");
}

function keepAndRebuild(report) {
    var contents = new ActiveXObject("Corvane.JobContents");
    contents.GenerateContentsFromPageCounterInfo(report[0], report[1], report[2], report[3], report[4]);

    var row = rowOf(contents);
    var rebuilt = rebuild(row);
    show(row, rebuilt);

    // Compare codes, not texts: words return in the catalogue's spelling and order, so "Staple,Punch" becomes
    // "Punch,Staple".
    var rowAgain = rowOf(rebuilt);
    for (var column in row) {
        checkSame(column, row[column], rowAgain[column]);
    }
}

// The columns of a table of jobs.
function rowOf(contents) {
    return {
        copyLines: contents.DBCopyLines,
        originals: contents.JobOriginals,
        copies: contents.JobCopies,
        pdl: contents.DBPdl,
        finishing: contents.DBFinishing
    };
}

function rebuild(row) {
    var contents = new ActiveXObject("Corvane.JobContents");
    contents.GenerateContentsFromDBInfo(row.copyLines, row.originals, row.copies, row.pdl, row.finishing);
    return contents;
}

function show(row, contents) {
    WScript.Echo(row.copyLines + " | " + row.originals + " | " + row.copies + " | " + row.pdl + " | " +
        row.finishing);
    for (var i = 0; i < contents.JobCopyLines.Count; i++) {
        var line = contents.JobCopyLines.Item(i);
        WScript.Echo("  " + line.PaperSize + " (" + line.Attributes + "): " + line.PagesTotal + " pages on " +
            line.Sheets + " sheets; " + contents.JobPdl + "; " + (contents.JobFinishing || "no finishing"));
    }
}

// A row has no column for blank pages: they become black-and-white pages.
function blankPagesBecomeBlackAndWhite() {
    var line = new ActiveXObject("Corvane.CopyLine");
    line.PaperSize = "A4";
    line.Attributes = "Simplex,B&W";
    line.Sheets = 5;
    line.PagesBW = 3;
    line.PagesBlank = 2;
    var contents = new ActiveXObject("Corvane.JobContents");
    contents.Xml = "<JobContents Version=\"4.0\"><JobCopyLines>" + line.Xml + "</JobCopyLines></JobContents>";

    var row = rowOf(contents);
    var rebuilt = rebuild(row);
    show(row, rebuilt);
    checkSame("PagesBW", 5, rebuilt.JobCopyLines.Item(0).PagesBW);
    checkSame("PagesBlank", 0, rebuilt.JobCopyLines.Item(0).PagesBlank);
    checkSame("TotalPages", contents.TotalPages, rebuilt.TotalPages);
}

// A copy line with an unknown code is logged and skipped; the others are read.
function unusableRowsAreLeftOut() {
    var row = { copyLines: "9999,1,0,1,5;1,7,0,7,5", originals: 7, copies: 1, pdl: 1, finishing: 0 };
    var rebuilt = rebuild(row);
    show(row, rebuilt);
    checkSame("Count", 1, rebuilt.JobCopyLines.Count);
    checkSame("PagesBW", 7, rebuilt.JobCopyLines.Item(0).PagesBW);
}

function checkSame(what, expected, actual) {
    if (expected !== actual) {
        throw new Error(what + ": expected '" + expected + "', got '" + actual + "'");
    }
}
