// Job contents from the rows of a database: rebuilds them from their codes, compares them with the records that the
// rows came from, and shows what the codes do not keep.
//
//   cscript //nologo contents_from_rows.js ROWS.txt FILES.txt
//
// ROWS.txt has a line for each row of the view contents_codes (../docs/database.md):
//
//   sqlite3 -separator "|" jobs.db "SELECT job_guid, copy_lines, job_originals, job_copies, pdl_code, finishing_mask FROM contents_codes" > ROWS.txt
//
// FILES.txt lists the files of the records, with one record each:
//
//   dir /b /s jobs\*.xml > FILES.txt
//
// The library must be registered (regsvr32 Tarnwick.dll). Exit code: 0, or 1 with a message if a step fails.

var fileSystem = new ActiveXObject("Scripting.FileSystemObject");
var exitCode = 1;
try {
    main(WScript.Arguments(0), WScript.Arguments(1));
    exitCode = 0;
} catch (error) {
    WScript.Echo("Failed: " + error.message);
}
WScript.Quit(exitCode);

function main(rowsPath, filesPath) {
    var rows = readRows(rowsPath);
    var jobs = 0, equal = 0, differences = {};
    var files = readText(filesPath).split(/\r?\n/);
    for (var i = 0; i < files.length; i++) {
        var job = files[i] === "" ? null : readJob(files[i]);
        if (job === null) {
            continue;
        }
        var row = rows[job.JobGuid];
        if (row === undefined) {
            throw new Error("no row has the job " + job.JobGuid);
        }
        jobs++;
        if (rebuild(row).Xml === job.JobContents.Xml) {
            equal++;
        } else {
            addDifferences(differences, job.JobContents, rebuild(row));
        }
    }
    WScript.Echo(equal + " contents equal their records. Properties that differ in the others:");
    for (var name in differences) {
        WScript.Echo("  " + name + ": " + differences[name]);
    }
    WScript.Echo("All " + jobs + " jobs are rebuilt.");
}

function rebuild(row) {
    var contents = new ActiveXObject("Corvane.JobContents");
    contents.GenerateContentsFromDBInfo(row[1], Number(row[2]), Number(row[3]), Number(row[4]), Number(row[5]));
    return contents;
}

// Counts each property that differs once for each job.
function addDifferences(differences, record, rebuilt) {
    function compare(name, a, b) {
        if (a !== b) {
            found[name] = true;
        }
    }
    var found = {};
    compare("JobFinishing", record.JobFinishing, rebuilt.JobFinishing);
    compare("JobPdl", record.JobPdl, rebuilt.JobPdl);
    compare("JobOriginals", record.JobOriginals, rebuilt.JobOriginals);
    compare("JobCopies", record.JobCopies, rebuilt.JobCopies);
    var lines = record.JobCopyLines, others = rebuilt.JobCopyLines;
    compare("number of copy lines", lines.Count, others.Count);
    var names = ["PaperSize", "PaperDimensions", "Attributes", "Sheets", "PagesBW", "PagesColor", "PagesBlank"];
    for (var i = 0; lines.Count === others.Count && i < lines.Count; i++) {
        for (var n = 0; n < names.length; n++) {
            compare(names[n], lines.Item(i)[names[n]], others.Item(i)[names[n]]);
        }
    }
    for (var name in found) {
        differences[name] = (differences[name] || 0) + 1;
    }
}

// The rows by the job's GUID.
function readRows(path) {
    var rows = {};
    var lines = readText(path).split(/\r?\n/);
    for (var i = 0; i < lines.length; i++) {
        var row = lines[i].split("|");
        rows[row[0]] = row;
    }
    return rows;
}

// Null if the file is not a job.
function readJob(path) {
    var text = readText(path);
    var root = /<(PrintJob|CopyJob|ScanJob|FaxJob)\b/.exec(text);
    if (root === null) {
        return null;
    }
    var job = new ActiveXObject("Corvane." + root[1]);
    job.Xml = text;
    return job;
}

function readText(path) {
    var file = fileSystem.OpenTextFile(path, 1);
    var text = file.AtEndOfStream ? "" : file.ReadAll();
    file.Close();
    return text;
}
