' Failures as scripts see them: number and text.

Const WRONG_LOG_TARGET = &H800710DD

Sub RunTests()
    PrintJob_without_its_root_names_the_missing_element
    Job_records_without_their_root_name_the_missing_element
    PrintJob_property_of_another_log_target_names_both
    PrintJob_unknown_log_target_type_is_named
    PrintJob_malformed_version_is_refused
    PolicyResults_without_version_is_refused
    Contents_records_without_their_root_report_an_invalid_fragment
    WindowsPrintInfo_without_its_root_fails_without_text
    CopyLines_item_out_of_range_is_an_invalid_argument
    LogicalPrinter_malformed_destination_is_refused
    Device_job_without_contents_names_the_missing_element
    Job_reports_the_failure_of_its_child
    Failure_without_text_does_not_keep_the_previous_text
End Sub

Sub PrintJob_without_its_root_names_the_missing_element()
    Test "PrintJob_without_its_root_names_the_missing_element"
    CheckPutXmlFails "Corvane.PrintJob", "<x/>", "PrintJob element is missing."
    CheckPutXmlFails "Corvane.PrintJob", "", "PrintJob element is missing."
End Sub

Sub Job_records_without_their_root_name_the_missing_element()
    Test "Job_records_without_their_root_name_the_missing_element"
    CheckPutXmlFails "Corvane.CopyJob", "<x/>", "CopyJob element is missing."
    CheckPutXmlFails "Corvane.ScanJob", "<x/>", "ScanJob element is missing."
    CheckPutXmlFails "Corvane.FaxJob", "<x/>", "FaxJob element is missing."
    CheckPutXmlFails "Corvane.LogicalPrinter", "<x/>", "LogicalPrinter element is missing."
    CheckPutXmlFails "Corvane.PolicyResults", "<x/>", "PolicyResults element is missing."
End Sub

Sub PrintJob_property_of_another_log_target_names_both()
    Dim job, value
    Test "PrintJob_property_of_another_log_target_names_both"
    Set job = CreateObject("Corvane.PrintJob")
    On Error Resume Next
    value = job.DeviceAddress
    CheckError Err.Number, Err.Description, WRONG_LOG_TARGET, _
        "The DeviceAddress property is not supported when the LogTargetType is None."
    Err.Clear

    job.DeviceId = 42
    CheckLong Err.Number, 0
    value = job.LogicalPrinterGuid
    CheckError Err.Number, Err.Description, WRONG_LOG_TARGET, _
        "The LogicalPrinterGuid property is not supported when the LogTargetType is Device."
    Err.Clear

    job.LogicalPrinterGuid = "{5B0E2A64-8C1F-4C57-9F0B-2D0C8D3E7A11}"
    CheckLong Err.Number, 0
    value = job.DeviceId
    CheckError Err.Number, Err.Description, WRONG_LOG_TARGET, _
        "The DeviceId property is not supported when the LogTargetType is LogicalPrinter."
End Sub

Sub PrintJob_unknown_log_target_type_is_named()
    Test "PrintJob_unknown_log_target_type_is_named"
    CheckPutXmlFails "Corvane.PrintJob", _
        "<PrintJob Version=""7.26""><LogTarget Type=""device"">42</LogTarget></PrintJob>", _
        "The PrintJob LogTargetType 'device' is not supported."
    CheckPutXmlFails "Corvane.PrintJob", _
        "<PrintJob Version=""7.26""><LogTarget>42</LogTarget></PrintJob>", _
        "The PrintJob LogTargetType '' is not supported."
End Sub

Sub PrintJob_malformed_version_is_refused()
    Test "PrintJob_malformed_version_is_refused"
    CheckPutXmlFails "Corvane.PrintJob", "<PrintJob Version=""7""/>", _
        "Version has fewer than two components or more than four components."
End Sub

Sub PolicyResults_without_version_is_refused()
    Test "PolicyResults_without_version_is_refused"
    CheckPutXmlFails "Corvane.PolicyResults", "<PolicyResults/>", _
        "Version has fewer than two components or more than four components."
End Sub

Sub Contents_records_without_their_root_report_an_invalid_fragment()
    Test "Contents_records_without_their_root_report_an_invalid_fragment"
    CheckPutXmlFails "Corvane.CopyLine", "<x/>", "[CCopyLineImpl::put_Xml] Invalid Xml fragment"
    CheckPutXmlFails "Corvane.CopyLines", "<x/>", "[CCopyLinesImpl::put_Xml] Invalid Xml fragment"
    CheckPutXmlFails "Corvane.JobContents", "<x/>", "[CJobContentsImpl::put_Xml] Invalid Xml fragment"
End Sub

' Without error information, any text comes from the script engine.
Sub WindowsPrintInfo_without_its_root_fails_without_text()
    Dim info
    Test "WindowsPrintInfo_without_its_root_fails_without_text"
    Set info = CreateObject("Corvane.WindowsPrintInfo")
    On Error Resume Next
    info.Xml = "<x/>"
    Check Err.Number = E_FAIL, "error 0x" & Hex(Err.Number) & ", expected 0x" & Hex(E_FAIL)
    CheckLacks Err.Description, "Xml fragment"
End Sub

Sub CopyLines_item_out_of_range_is_an_invalid_argument()
    Dim lines, line
    Test "CopyLines_item_out_of_range_is_an_invalid_argument"
    Set lines = CreateObject("Corvane.CopyLines")
    lines.Xml = "<JobCopyLines><CopyLine/></JobCopyLines>"
    CheckLong lines.Count, 1
    On Error Resume Next
    Set line = lines.Item(1)
    CheckInvalidArgument Err.Number
    Set line = lines.Item(-1)
    CheckInvalidArgument Err.Number
End Sub

Sub LogicalPrinter_malformed_destination_is_refused()
    Dim printer
    Test "LogicalPrinter_malformed_destination_is_refused"
    Set printer = CreateObject("Corvane.LogicalPrinter")
    printer.Destination = "<a/>"
    On Error Resume Next
    printer.Destination = "abc"
    CheckError Err.Number, Err.Description, E_FAIL, "Destination element is not well formed."
    Err.Clear
    CheckEqual printer.Destination, "<a/>"
End Sub

Sub Device_job_without_contents_names_the_missing_element()
    Test "Device_job_without_contents_names_the_missing_element"
    CheckPutXmlFails "Corvane.CopyJob", "<CopyJob Version=""4.0""/>", "JobContents element is missing."
    CheckPutXmlFails "Corvane.ScanJob", "<ScanJob Version=""4.0""/>", "JobContents element is missing."
    CheckPutXmlFails "Corvane.FaxJob", "<FaxJob Version=""4.0""/>", "JobContents element is missing."
End Sub

Sub Job_reports_the_failure_of_its_child()
    Test "Job_reports_the_failure_of_its_child"
    CheckPutXmlFails "Corvane.CopyJob", "<CopyJob Version=""4.0""><JobContents/></CopyJob>", _
        "[CJobContentsImpl::put_Xml] Invalid Xml fragment"
    CheckPutXmlFails "Corvane.PrintJob", "<PrintJob><JobContents/></PrintJob>", _
        "[CJobContentsImpl::put_Xml] Invalid Xml fragment"
End Sub

Sub Failure_without_text_does_not_keep_the_previous_text()
    Dim lines, line
    Test "Failure_without_text_does_not_keep_the_previous_text"
    Set lines = CreateObject("Corvane.CopyLines")
    On Error Resume Next
    lines.Xml = "<x/>"
    CheckError Err.Number, Err.Description, E_FAIL, "[CCopyLinesImpl::put_Xml] Invalid Xml fragment"
    Err.Clear
    Set line = lines.Item(0)
    CheckLacks Err.Description, "Xml fragment"
    CheckInvalidArgument Err.Number
    lines.Xml = "<JobCopyLines/>"
    CheckLong Err.Number, 0
End Sub

' --- Helpers -----------------------------------------------------------------------------------------------

Sub CheckPutXmlFails(progId, xml, message)
    Dim record
    Set record = CreateObject(progId)
    On Error Resume Next
    record.Xml = xml
    CheckError Err.Number, Err.Description, E_FAIL, message
End Sub

' The script engine maps E_INVALIDARG to its own number.
Sub CheckInvalidArgument(number)
    Const INVALID_PROCEDURE_CALL_OR_ARGUMENT = 5
    CheckLong number, INVALID_PROCEDURE_CALL_OR_ARGUMENT
    Err.Clear
End Sub
