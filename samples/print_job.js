// Turns page counter reports into print jobs, passes each job on as XML, and checks that the receiver gets the
// same job. Like print_job.vbs, in JScript.
//
//   cscript //nologo print_job.js [--xml]
//
//   --xml   also shows the XML of each job
//
// The library must be registered (regsvr32 Tarnwick.dll). Exit code: 0, or 1 with a message if a step fails.

// Bits of DevModeFields: the driver settings that are valid.
var DM_COLOR = 0x800;
var DM_DUPLEX = 0x1000;
var PAGE_ORDER_BOOKLET = 2;

var exitCode = 1;
try {
    main();
    exitCode = 0;
} catch (error) {
    WScript.Echo("Failed: " + error.message);
}
WScript.Quit(exitCode);

function main() {
    var reports = readReports(scriptFolder() + "\\data\\page_counter_reports.txt");
    for (var i = 0; i < reports.length; i++) {
        passOnJob(reports[i]);
    }
    WScript.Echo("All " + reports.length + " jobs agree.");
}

function passOnJob(report) {
    var sent = jobFromReport(report);
    var xml = sent.Xml;

    var received = new ActiveXObject("Corvane.PrintJob");
    received.Xml = xml;

    checkSameJob(sent, received);
    showJob(received, report);
    if (hasOption("--xml")) {
        WScript.Echo(xml);
    }
    WScript.Echo("");
}

// --- Filling a print job ---------------------------------------------------------------------------------

function jobFromReport(report) {
    var owner = report.User.split("\\");
    var job = new ActiveXObject("Corvane.PrintJob");
    job.JobGuid = "{7E0D1C5A-2F4B-4E0C-9A55-" + ("00000000000" + report.Size).slice(-12) + "}";
    job.UserDomainName = owner[0];
    job.UserName = owner[1];
    job.JobTimeLocal = report.Time;
    job.JobTimeUtc = report.Utc;
    job.JobSize = Number(report.Size);
    job.JobName = report.Document;
    job.MachineName = report.Machine;
    job.ApplicationName = report.Application;
    setLogTarget(job, report.Target);
    generateContents(job.JobContents, report);
    job.WindowsPrintInfo = printInfoFromReport(report);
    if (report.Policy) {
        job.PolicyResults = policyFromReport(report);
    }
    return job;
}

function setLogTarget(job, target) {
    switch (firstWord(target)) {
    case "LogicalPrinter":
        job.LogicalPrinterGuid = afterFirstWord(target);
        break;
    case "Device":
        job.DeviceId = Number(afterFirstWord(target));
        break;
    case "DeviceAddress":
        job.DeviceAddress = afterFirstWord(target);
        break;
    }
}

// A report with one paper size has totals, one with several sizes has copy lines.
function generateContents(contents, report) {
    if (report.lines.length === 0) {
        contents.GenerateContentsFromPageCounterInfo(report.Attributes, Number(report.Originals),
            Number(report.Copies), Number(report.Pages), Number(report.Sheets));
        return;
    }
    contents.GenerateGeneralContentsFromPageCounterInfo(report.Attributes, Number(report.Originals),
        Number(report.Copies), false);
    for (var i = 0; i < report.lines.length; i++) {
        var fields = report.lines[i].split(";");
        contents.GenerateCopyLineFromPageCounterInfo(fields[0], Number(fields[1]), Number(fields[2]),
            Number(fields[3]), Number(fields[4]));
    }
}

function printInfoFromReport(report) {
    var info = new ActiveXObject("Corvane.WindowsPrintInfo");
    info.JobInfoOriginals = Number(report.Originals);
    info.JobInfoPages = Number(report.Originals) * Number(report.Copies);
    if (report.Duplex) {
        info.DevModeFields = info.DevModeFields | DM_DUPLEX;
        info.DevModeDuplex = Number(report.Duplex);
    }
    if (report.Color) {
        info.DevModeFields = info.DevModeFields | DM_COLOR;
        info.DevModeColor = Number(report.Color);
    }
    if (report.Booklet) {
        info.AttributeInfoPageOrderFlags = PAGE_ORDER_BOOKLET;
    }
    return info;
}

function policyFromReport(report) {
    var policy = new ActiveXObject("Corvane.PolicyResults");
    policy.PolicyId = Number(firstWord(report.Policy));
    policy.PolicyName = afterFirstWord(report.Policy);
    for (var i = 0; i < report.violations.length; i++) {
        policy.AddRuleViolation(Number(firstWord(report.violations[i])), afterFirstWord(report.violations[i]));
    }
    return policy;
}

// --- Comparing what was sent with what was received --------------------------------------------------------

function checkSameJob(sent, received) {
    checkSame("Xml", sent.Xml, received.Xml);
    checkSame("JobName", sent.JobName, received.JobName);
    checkSame("UserDomainName", sent.UserDomainName, received.UserDomainName);
    checkSame("UserName", sent.UserName, received.UserName);
    checkSame("JobSize", sent.JobSize, received.JobSize);
    checkSame("LogTargetType", sent.LogTargetType, received.LogTargetType);
    checkSame("DBCopyLines", sent.JobContents.DBCopyLines, received.JobContents.DBCopyLines);
    checkSame("JobPdl", sent.JobContents.JobPdl, received.JobContents.JobPdl);
    checkSame("JobFinishing", sent.JobContents.JobFinishing, received.JobContents.JobFinishing);
    checkSame("IsDuplex", sent.WindowsPrintInfo.IsDuplex, received.WindowsPrintInfo.IsDuplex);
}

function checkSame(what, sentValue, receivedValue) {
    if (sentValue !== receivedValue) {
        throw new Error(what + ": sent '" + sentValue + "', received '" + receivedValue + "'");
    }
}

// --- Showing a job -----------------------------------------------------------------------------------------

function showJob(job, report) {
    var contents = job.JobContents;
    WScript.Echo(job.JobName);
    showItem("user", job.UserDomainName + "\\" + job.UserName + " on " + job.MachineName);
    showItem("contents", contents.TotalPages + " pages: " + contents.TotalPagesBW + " black-and-white, " +
        contents.TotalPagesColor + " colour; " + contents.JobPdl +
        (contents.JobFinishing ? "; finishing: " + contents.JobFinishing : ""));
    showCopyLines(contents.JobCopyLines);
    showItem("database", contents.DBCopyLines);
    if (report.Policy) {
        showItem("policy", policyText(job.PolicyResults));
    }
}

function showItem(label, text) {
    WScript.Echo("  " + (label + "            ").slice(0, 12) + text);
}

function showCopyLines(copyLines) {
    for (var i = 0; i < copyLines.Count; i++) {
        var line = copyLines.Item(i);
        showItem("  " + line.PaperSize, line.Sheets + " sheets: " + line.PagesBW + " black-and-white, " +
            line.PagesColor + " colour, " + line.PagesBlank + " blank (" + line.Attributes + ")");
    }
}

function policyText(policy) {
    var text = policy.PolicyId + " " + policy.PolicyName + ": ";
    if (!policy.PolicyViolated) {
        return text + "kept";
    }
    return text + "violates " + policy.RuleViolations + (policy.InformOnlyViolations ? ", inform only" : "");
}

// --- Reading the reports -------------------------------------------------------------------------------------

// Returns the reports in file order. "lines" and "violations" hold the repeatable keys.
function readReports(path) {
    var reports = [];
    var file = new ActiveXObject("Scripting.FileSystemObject").OpenTextFile(path, 1);
    while (!file.AtEndOfStream) {
        var line = trim(file.ReadLine());
        if (line.indexOf("Document:") === 0) {
            reports.push({ lines: [], violations: [] });
        }
        if (line !== "" && line.charAt(0) !== "#") {
            addValue(reports[reports.length - 1], line);
        }
    }
    file.Close();
    return reports;
}

function addValue(report, line) {
    var colon = line.indexOf(":");
    var key = line.substring(0, colon);
    var value = trim(line.substring(colon + 1));
    if (key === "Line") {
        report.lines.push(value);
    } else if (key === "Violation") {
        report.violations.push(value);
    } else {
        report[key] = value;
    }
}

// --- Small helpers ---------------------------------------------------------------------------------------------

function trim(text) {
    return text.replace(/^\s+|\s+$/g, "");
}

function firstWord(text) {
    return text.substring(0, text.indexOf(" "));
}

function afterFirstWord(text) {
    return text.substring(text.indexOf(" ") + 1);
}

function hasOption(name) {
    for (var i = 0; i < WScript.Arguments.length; i++) {
        if (WScript.Arguments(i) === name) {
            return true;
        }
    }
    return false;
}

function scriptFolder() {
    return new ActiveXObject("Scripting.FileSystemObject").GetParentFolderName(WScript.ScriptFullName);
}
