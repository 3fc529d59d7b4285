// Checks for the script tests. run_script.cmake puts this file before each JScript test and a call of RunAndQuit
// after it. A test file adds its test functions to "tests", by name.
var tests = {};
var currentTest = "";
var passedChecks = 0;
var failedChecks = 0;
var keptTexts = 0;

function failed(message) {
    failedChecks++;
    WScript.Echo(currentTest + ": " + message);
}

function check(condition, message) {
    if (condition) {
        passedChecks++;
    } else {
        failed(message);
    }
}

function checkEqual(actual, expected) {
    check(actual === expected, "got " + typeof actual + " '" + actual + "', expected " + typeof expected +
        " '" + expected + "'");
}

function checkContains(text, part) {
    check(text.indexOf(part) >= 0, "'" + part + "' is missing in " + text);
}

// The action must fail with this HRESULT (unsigned) and, unless null, this description.
function checkFails(action, expectedNumber, expectedDescription) {
    try {
        action();
    } catch (error) {
        var number = error.number < 0 ? error.number + 0x100000000 : error.number;
        check(number === expectedNumber, "error 0x" + number.toString(16) + ", expected 0x" +
            expectedNumber.toString(16));
        if (expectedDescription !== null) {
            checkEqual(error.message, expectedDescription);
        }
        return;
    }
    failed("the call should have failed");
}

// The XML of a record. Also writes it to the folder of the schema test.
function xmlOf(record) {
    var xml = record.Xml;
    var folder = new ActiveXObject("WScript.Shell").Environment("Process").Item("JOBOBJECTS_WRITTEN_XML");
    if (folder !== "") {
        keptTexts++;
        var file = new ActiveXObject("Scripting.FileSystemObject").CreateTextFile(
            folder + "/" + WScript.ScriptName + keptTexts + ".xml", true, true);
        file.Write(xml);
        file.Close();
    }
    return xml;
}

function RunAndQuit() {
    for (var name in tests) {
        currentTest = name;
        try {
            tests[name]();
        } catch (error) {
            failed("broke off with " + error.number + " " + error.message);
        }
    }
    if (failedChecks > 0 || passedChecks === 0) {
        WScript.Echo("FAILED " + failedChecks + " checks");
        WScript.Quit(1);
    }
    WScript.Echo("PASSED " + passedChecks + " checks");
    WScript.Quit(7);
}
