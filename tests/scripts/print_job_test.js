function newJob() {
    return new ActiveXObject("Corvane.PrintJob");
}

function reread(job) {
    var copy = newJob();
    copy.Xml = xmlOf(job);
    checkEqual(xmlOf(copy), xmlOf(job));
    return copy;
}

tests.New_has_its_defaults = function () {
    var job = newJob();
    checkEqual(job.Version, "7.26");
    checkEqual(job.UserName, "");
    checkEqual(job.JobSize, 0);
    checkEqual(job.VpnConnected, false);
    checkEqual(job.TonerCoverage, -1);
    checkEqual(job.WindowsPrintInfo, null);
    checkEqual(job.PolicyResults, null);
};

tests.Properties_read_back_and_round_trip_through_Xml = function () {
    var job = newJob();
    job.UserName = "a.berg";
    job.JobSize = 1843200;
    job.VpnConnected = true;
    job.DeviceId = 42;
    checkEqual(job.UserName, "a.berg");
    checkEqual(job.JobSize, 1843200);
    checkEqual(job.VpnConnected, true);
    checkEqual(job.DeviceId, 42);

    var copy = reread(job);
    checkEqual(copy.UserName, "a.berg");
    checkEqual(copy.JobSize, 1843200);
    checkEqual(copy.VpnConnected, true);
    checkEqual(copy.DeviceId, 42);
};

tests.JobTimeLocal_accepts_text = function () {
    var job = newJob();
    job.JobTimeLocal = "2010-03-04 05:06:07";
    checkContains(xmlOf(job), "<JobTimeLocal>2010-03-04T05:06:07</JobTimeLocal>");
};

tests.Text_beyond_ASCII_round_trips_through_Xml = function () {
    var name = "\u00dcbersicht \u03a9 \u65e5\u672c \ud83d\ude00";
    var job = newJob();
    job.JobName = name;
    checkEqual(job.JobName, name);
    checkEqual(reread(job).JobName, name);
};

tests.Long_text_round_trips_through_Xml = function () {
    var name = "x";
    while (name.length < 100000) {
        name += name;
    }
    var job = newJob();
    job.JobName = name;
    checkEqual(reread(job).JobName, name);
};

tests.Children_are_put_and_round_trip_through_Xml = function () {
    var info = new ActiveXObject("Corvane.WindowsPrintInfo");
    info.DevModeFormName = "A4";
    var policy = new ActiveXObject("Corvane.PolicyResults");
    policy.AddRuleViolation(7, "Inform");
    var job = newJob();
    job.WindowsPrintInfo = info;
    job.PolicyResults = policy;
    job.JobContents.JobOriginals = 12;

    var copy = reread(job);
    checkEqual(copy.WindowsPrintInfo.DevModeFormName, "A4");
    checkEqual(copy.PolicyResults.RuleViolations, "7");
    checkEqual(copy.JobContents.JobOriginals, 12);
};

tests.Failures_are_exceptions_with_number_and_text = function () {
    var job = newJob();
    checkFails(function () { job.Xml = "<x/>"; }, 0x80004005, "PrintJob element is missing.");
    checkFails(function () { return job.DeviceId; }, 0x800710DD,
        "The DeviceId property is not supported when the LogTargetType is None.");
    checkFails(function () { new ActiveXObject("Corvane.CopyLines").Item(0); }, 0x80070057, null);
};
