Sub RunTests()
    New_has_its_defaults
    New_has_the_current_time
    New_writes_its_form
    Properties_read_back_and_round_trip_through_Xml
    Times_round_trip_through_Xml
    Text_with_markup_characters_round_trips_through_Xml
    Log_target_follows_the_last_property_put
    Log_target_round_trips_through_Xml
    Toner_with_coverage_only_reads_saving_as_0
    JobSize_negative_in_Xml_reads_as_0
    Version_missing_or_older_reads_as_the_lowest_supported
    Older_version_is_kept_and_omits_newer_elements
    JobContents_is_the_held_child
    Optional_children_can_be_put_and_cleared
    Children_round_trip_through_Xml
    PageCounterInfoXml_contains_message_and_result
    DeviceJobs_round_trip_through_Xml
End Sub

Function NewJob()
    Set NewJob = CreateObject("Corvane.PrintJob")
End Function

Function Reread(record, progId)
    Set Reread = CreateObject(progId)
    Reread.Xml = XmlOf(record)
    CheckEqual XmlOf(Reread), XmlOf(record)
End Function

Function RereadJob(job)
    Set RereadJob = Reread(job, "Corvane.PrintJob")
End Function

Sub New_has_its_defaults()
    Dim job
    Test "New_has_its_defaults"
    Set job = NewJob()
    CheckEqual job.Version, "7.26"
    CheckEqual job.JobGuid, ""
    CheckEqual job.UserName, ""
    CheckLong job.JobSize, 0
    CheckLong job.JobTimeLocalMsec, 0
    CheckLong job.LogTargetType, 0
    CheckEqual job.VpnConnected, False
    CheckEqual job.FromSystemUser, False
    CheckLong job.TonerCoverage, -1
    CheckLong job.TonerSaving, -1
    Check Not job.JobContents Is Nothing, "a new job has no contents"
    Check job.PageCounterJobContents Is Nothing, "a new job has page counter contents"
    Check job.WindowsPrintInfo Is Nothing, "a new job has print info"
    Check job.PolicyResults Is Nothing, "a new job has policy results"
End Sub

Sub New_has_the_current_time()
    Dim before, job, after
    Test "New_has_the_current_time"
    Const ONE_SECOND = 0.0000116
    before = Now
    Set job = NewJob()
    after = Now
    Check job.JobTimeLocal >= before - ONE_SECOND, job.JobTimeLocal & " is before " & before
    Check job.JobTimeLocal <= after + ONE_SECOND, job.JobTimeLocal & " is after " & after
    Check Abs(job.JobTimeUtc - job.JobTimeLocal) < 1, "UTC and local time lie more than a day apart"
End Sub

Sub New_writes_its_form()
    Dim xml
    Test "New_writes_its_form"
    xml = XmlOf(NewJob())
    CheckContains xml, "/OutputManagement/PrintJob"" Version=""7.26"">"
    CheckContains xml, "<LogTarget Type=""None""/>"
    CheckContains xml, "<JobContents "
    CheckContains xml, "<PageCounterInfo>"
    CheckLacks xml, "<Toner>"
    CheckLacks xml, "<WindowsPrintInfo>"
    CheckLacks xml, "<PolicyResults"
    CheckLong UBound(Split(xml, "<FromSystemUser>false</FromSystemUser>")), 2
    CheckEqual Right(xml, 11), "</PrintJob>"
End Sub

Sub Properties_read_back_and_round_trip_through_Xml()
    Dim job
    Test "Properties_read_back_and_round_trip_through_Xml"
    Set job = NewJob()
    job.JobGuid = "{11111111-2222-3333-4444-555555555555}"
    job.CustomerCode = "C-100"
    job.UserName = "a.berg"
    job.UserDomainName = "NORTHSHORE"
    job.FromSystemUser = True
    job.DesktopUserName = "m.lindqvist"
    job.DesktopUserDomainName = "HARBOR"
    job.JobSize = 1843200
    job.JobName = "Quarterly figures.docx"
    job.JobFileName = "00117.SPL"
    job.JobDataType = "NT EMF 1.008"
    job.MachineName = "WS-0117"
    job.ApplicationName = "writer.exe"
    job.ApplicationDescription = "Word processor"
    job.VpnConnected = True
    job.TonerCoverage = 12
    job.TonerSaving = 3
    job.DataSource = 2
    job.JobContentsSource = 4
    job.JobContentsDiscardCount = 5
    CheckProperties job
    CheckProperties RereadJob(job)
End Sub

Sub CheckProperties(job)
    CheckEqual job.JobGuid, "{11111111-2222-3333-4444-555555555555}"
    CheckEqual job.CustomerCode, "C-100"
    CheckEqual job.UserName, "a.berg"
    CheckEqual job.UserDomainName, "NORTHSHORE"
    CheckEqual job.FromSystemUser, True
    CheckEqual job.DesktopUserName, "m.lindqvist"
    CheckEqual job.DesktopUserDomainName, "HARBOR"
    CheckLong job.JobSize, 1843200
    CheckEqual job.JobName, "Quarterly figures.docx"
    CheckEqual job.JobFileName, "00117.SPL"
    CheckEqual job.JobDataType, "NT EMF 1.008"
    CheckEqual job.MachineName, "WS-0117"
    CheckEqual job.ApplicationName, "writer.exe"
    CheckEqual job.ApplicationDescription, "Word processor"
    CheckEqual job.VpnConnected, True
    CheckLong job.TonerCoverage, 12
    CheckLong job.TonerSaving, 3
    CheckLong job.DataSource, 2
    CheckLong job.JobContentsSource, 4
    CheckLong job.JobContentsDiscardCount, 5
End Sub

Sub Times_round_trip_through_Xml()
    Dim job
    Test "Times_round_trip_through_Xml"
    Set job = NewJob()
    job.JobTimeLocal = DateSerial(2010, 3, 4) + TimeSerial(5, 6, 7)
    job.JobTimeLocalMsec = 89
    job.JobTimeUtc = DateSerial(2010, 3, 4) + TimeSerial(4, 6, 7)
    CheckContains XmlOf(job), "<JobTimeLocal>2010-03-04T05:06:07.089</JobTimeLocal>"
    CheckContains XmlOf(job), "<JobTimeUtc>2010-03-04T04:06:07</JobTimeUtc>"
    Set job = RereadJob(job)
    CheckEqual CStr(job.JobTimeLocal), CStr(DateSerial(2010, 3, 4) + TimeSerial(5, 6, 7))
    CheckLong job.JobTimeLocalMsec, 89
    CheckEqual CStr(job.JobTimeUtc), CStr(DateSerial(2010, 3, 4) + TimeSerial(4, 6, 7))
End Sub

Sub Text_with_markup_characters_round_trips_through_Xml()
    Dim job, name
    Test "Text_with_markup_characters_round_trips_through_Xml"
    name = "Offer <draft> & ""notes"" 'v2' ]]> .txt"
    Set job = NewJob()
    job.JobName = name
    CheckContains XmlOf(job), "<JobName>Offer &lt;draft&gt; &amp; "
    CheckEqual RereadJob(job).JobName, name
End Sub

Sub Log_target_follows_the_last_property_put()
    Dim job
    Test "Log_target_follows_the_last_property_put"
    Set job = NewJob()
    job.DeviceId = 42
    CheckLong job.LogTargetType, 2
    CheckLong job.DeviceId, 42
    job.DeviceAddress = "192.0.2.17"
    CheckLong job.LogTargetType, 3
    CheckEqual job.DeviceAddress, "192.0.2.17"
    job.LogicalPrinterGuid = "{5B0E2A64}"
    CheckLong job.LogTargetType, 1
    CheckEqual job.LogicalPrinterGuid, "{5B0E2A64}"
    job.ResetLogTarget
    CheckLong job.LogTargetType, 0
End Sub

Sub Log_target_round_trips_through_Xml()
    Dim job
    Test "Log_target_round_trips_through_Xml"
    Set job = NewJob()
    job.DeviceAddress = "192.0.2.17"
    CheckContains XmlOf(job), "<LogTarget Type=""DeviceAddress"">192.0.2.17</LogTarget>"
    Set job = RereadJob(job)
    CheckLong job.LogTargetType, 3
    CheckEqual job.DeviceAddress, "192.0.2.17"
    job.Xml = "<PrintJob Version=""7.26""><LogTarget Type=""Device"">0x10</LogTarget></PrintJob>"
    CheckLong job.DeviceId, 16
End Sub

Sub Toner_with_coverage_only_reads_saving_as_0()
    Dim job
    Test "Toner_with_coverage_only_reads_saving_as_0"
    Set job = NewJob()
    job.Xml = "<PrintJob Version=""7.26""><Toner><Coverage>12</Coverage></Toner></PrintJob>"
    CheckLong job.TonerCoverage, 12
    CheckLong job.TonerSaving, 0
End Sub

Sub JobSize_negative_in_Xml_reads_as_0()
    Dim job
    Test "JobSize_negative_in_Xml_reads_as_0"
    Set job = NewJob()
    job.JobSize = 7
    job.Xml = "<PrintJob Version=""7.26""><JobSize>-5</JobSize></PrintJob>"
    CheckLong job.JobSize, 0
End Sub

Sub Version_missing_or_older_reads_as_the_lowest_supported()
    Dim job
    Test "Version_missing_or_older_reads_as_the_lowest_supported"
    Set job = NewJob()
    job.Xml = "<PrintJob/>"
    CheckEqual job.Version, "3.5"
    job.Xml = "<PrintJob Version=""2.0""/>"
    CheckEqual job.Version, "3.5"
    job.DeviceId = 1
    CheckEqual job.Version, "4.2"
End Sub

Sub Older_version_is_kept_and_omits_newer_elements()
    Dim job, xml
    Test "Older_version_is_kept_and_omits_newer_elements"
    Set job = NewJob()
    job.Xml = "<PrintJob Version=""4.1""><LogicalPrinterGuid>{A}</LogicalPrinterGuid></PrintJob>"
    CheckEqual job.Version, "4.1"
    CheckLong job.LogTargetType, 1
    xml = XmlOf(job)
    CheckContains xml, "<LogicalPrinterGuid>{A}</LogicalPrinterGuid>"
    CheckLacks xml, "<LogTarget"
    CheckLacks xml, "<ApplicationName"
    CheckLacks xml, "<VpnConnected"
    CheckLacks xml, "<Toner"
End Sub

Sub JobContents_is_the_held_child()
    Dim job, contents
    Test "JobContents_is_the_held_child"
    Set job = NewJob()
    job.JobContents.JobOriginals = 12
    CheckLong job.JobContents.JobOriginals, 12

    Set contents = CreateObject("Corvane.JobContents")
    contents.JobOriginals = 5
    job.JobContents = contents
    CheckLong job.JobContents.JobOriginals, 5
    contents.JobOriginals = 6
    CheckLong job.JobContents.JobOriginals, 6
End Sub

Sub Optional_children_can_be_put_and_cleared()
    Dim job
    Test "Optional_children_can_be_put_and_cleared"
    Set job = NewJob()
    job.WindowsPrintInfo = CreateObject("Corvane.WindowsPrintInfo")
    job.PolicyResults = CreateObject("Corvane.PolicyResults")
    job.PageCounterJobContents = CreateObject("Corvane.JobContents")
    Check Not job.WindowsPrintInfo Is Nothing, "the print info was not kept"
    Check Not job.PolicyResults Is Nothing, "the policy results were not kept"
    Check Not job.PageCounterJobContents Is Nothing, "the page counter contents were not kept"
    job.WindowsPrintInfo = Nothing
    job.PolicyResults = Nothing
    job.PageCounterJobContents = Nothing
    Check job.WindowsPrintInfo Is Nothing, "the print info was not cleared"
    Check job.PolicyResults Is Nothing, "the policy results were not cleared"
    Check job.PageCounterJobContents Is Nothing, "the page counter contents were not cleared"
End Sub

Sub Children_round_trip_through_Xml()
    Dim job, info, policy, counted
    Test "Children_round_trip_through_Xml"
    Set info = CreateObject("Corvane.WindowsPrintInfo")
    info.DevModeFormName = "A4"
    Set policy = CreateObject("Corvane.PolicyResults")
    policy.AddRuleViolation 7, "Inform"
    Set counted = CreateObject("Corvane.JobContents")
    counted.JobCopies = 3
    Set job = NewJob()
    job.JobContents.JobOriginals = 12
    job.WindowsPrintInfo = info
    job.PolicyResults = policy
    job.PageCounterJobContents = counted

    Set job = RereadJob(job)
    CheckLong job.JobContents.JobOriginals, 12
    CheckEqual job.WindowsPrintInfo.DevModeFormName, "A4"
    CheckEqual job.PolicyResults.RuleViolations, "7"
    CheckLong job.PageCounterJobContents.JobCopies, 3
End Sub

Sub PageCounterInfoXml_contains_message_and_result()
    Dim job
    Test "PageCounterInfoXml_contains_message_and_result"
    Set job = NewJob()
    job.PageCounterErrorMessage = "no such file"
    job.PageCounterResult = "failed"
    CheckEqual job.PageCounterInfoXml, "<PageCounterInfo>" & _
        "<PageCounterErrorMessage>no such file</PageCounterErrorMessage>" & _
        "<PageCounterResult>failed</PageCounterResult></PageCounterInfo>"
    Set job = RereadJob(job)
    CheckEqual job.PageCounterErrorMessage, "no such file"
    CheckEqual job.PageCounterResult, "failed"
End Sub

Sub DeviceJobs_round_trip_through_Xml()
    Dim job
    Test "DeviceJobs_round_trip_through_Xml"
    Set job = CreateObject("Corvane.CopyJob")
    job.DeviceId = 42
    job.IdentifierData = "card 17"
    Set job = Reread(job, "Corvane.CopyJob")
    CheckLong job.DeviceId, 42
    CheckEqual job.IdentifierData, "card 17"

    Set job = CreateObject("Corvane.ScanJob")
    job.Destination = "\\archive\in"
    job.Duration = 9
    Set job = Reread(job, "Corvane.ScanJob")
    CheckEqual job.Destination, "\\archive\in"
    CheckLong job.Duration, 9

    Set job = CreateObject("Corvane.FaxJob")
    job.PhoneNumber = "+47 555 0100"
    job.RemoteStationId = "OSLO"
    Set job = Reread(job, "Corvane.FaxJob")
    CheckEqual job.PhoneNumber, "+47 555 0100"
    CheckEqual job.RemoteStationId, "OSLO"
End Sub
