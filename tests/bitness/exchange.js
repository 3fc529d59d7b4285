// Reads records of any class from a text, with a form feed between them, and writes them again: exchange.js IN OUT
// CODES. CODES receives what the records and their errors give besides XML. exchange.vbs does the same.
var files = new ActiveXObject("Scripting.FileSystemObject");

function readText(path) {
    var file = files.OpenTextFile(path, 1, false, -1);
    var text = file.ReadAll();
    file.Close();
    return text;
}

function writeText(path, text) {
    var file = files.CreateTextFile(path, true, true);
    file.Write(text);
    file.Close();
}

function codesOf(name, record) {
    var codes = name + "|";
    if (name === "JobContents") {
        codes += record.DBCopyLines + "|" + record.DBPdl + "|" + record.DBFinishing + "|" + record.TotalPages + "|";
    }
    try {
        record.Xml = "<broken><";
    } catch (error) {
        codes += error.number + "|" + error.message;
    }
    return codes + "\f";
}

var texts = readText(WScript.Arguments(0)).split("\f");
var written = [];
var codes = "";
for (var i = 0; i < texts.length; i++) {
    var name = texts[i].match(/^<(\w+)/)[1].replace("JobCopyLines", "CopyLines");
    var record = new ActiveXObject("Corvane." + name);
    record.Xml = texts[i];
    written.push(record.Xml);
    codes += codesOf(name, record);
}
writeText(WScript.Arguments(1), written.join("\f"));
writeText(WScript.Arguments(2), codes);
WScript.Echo(texts.length + " records");
