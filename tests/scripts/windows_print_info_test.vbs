Const DM_COPIES = &H100
Const DM_COLOR = &H800
Const DM_DUPLEX = &H1000

Sub RunTests()
    New_writes_all_elements_with_their_defaults
    Counts_below_their_minimum_are_raised
    Driver_settings_are_plain_copies
    IsDuplex_needs_the_field_bit_and_a_setting
    IsColor_needs_the_field_bit_and_a_setting
    IsBooklet_needs_the_exact_page_order
    JobInfoCopies_needs_the_field_bit
    Missing_originals_are_taken_from_the_pages
    Xml_without_the_root_resets_the_record
End Sub

Function NewInfo()
    Set NewInfo = CreateObject("Corvane.WindowsPrintInfo")
End Function

Sub New_writes_all_elements_with_their_defaults()
    Dim xml
    Test "New_writes_all_elements_with_their_defaults"
    xml = XmlOf(NewInfo())
    CheckLong UBound(Split(xml, ">0</")), 20
    CheckContains xml, "<AttributeInfoPagesPerSide>1</AttributeInfoPagesPerSide>"
    CheckContains xml, "<DevModeFormName/>"
    CheckContains xml, "<DevModeTtOption>0</DevModeTtOption>"
    CheckEqual Left(xml, 32), "<WindowsPrintInfo><JobInfoPages>"
End Sub

Sub Counts_below_their_minimum_are_raised()
    Dim info
    Test "Counts_below_their_minimum_are_raised"
    Set info = NewInfo()
    info.JobInfoPages = -1
    CheckLong info.JobInfoPages, 0
    info.JobInfoOriginals = -1
    CheckLong info.JobInfoOriginals, 0
    info.DevModeFields = -1
    CheckLong info.DevModeFields, 0
    info.AttributeInfoPagesPerSide = 0
    CheckLong info.AttributeInfoPagesPerSide, 1
    info.AttributeInfoPagesPerSide = -4
    CheckLong info.AttributeInfoPagesPerSide, 1
    info.AttributeInfoPagesPerSide = 4
    CheckLong info.AttributeInfoPagesPerSide, 4
End Sub

Sub Driver_settings_are_plain_copies()
    Dim info, copy
    Test "Driver_settings_are_plain_copies"
    Set info = NewInfo()
    info.DevModeOrientation = -2
    info.DevModePaperSize = 9
    info.DevModeFormName = "A4 <rotated>"
    info.DevModeTTOption = 3
    Set copy = NewInfo()
    copy.Xml = XmlOf(info)
    CheckLong copy.DevModeOrientation, -2
    CheckLong copy.DevModePaperSize, 9
    CheckEqual copy.DevModeFormName, "A4 <rotated>"
    CheckLong copy.DevModeTTOption, 3
    copy.Xml = "<WindowsPrintInfo><DevModeTTOption>3</DevModeTTOption></WindowsPrintInfo>"
    CheckLong copy.DevModeTTOption, 0
End Sub

Sub IsDuplex_needs_the_field_bit_and_a_setting()
    Dim info
    Test "IsDuplex_needs_the_field_bit_and_a_setting"
    Set info = NewInfo()
    info.DevModeDuplex = 2
    CheckEqual info.IsDuplex, False
    info.DevModeFields = DM_DUPLEX
    CheckEqual info.IsDuplex, True
    info.DevModeDuplex = 1
    CheckEqual info.IsDuplex, True
    info.DevModeDuplex = 0
    CheckEqual info.IsDuplex, False
End Sub

Sub IsColor_needs_the_field_bit_and_a_setting()
    Dim info
    Test "IsColor_needs_the_field_bit_and_a_setting"
    Set info = NewInfo()
    info.DevModeColor = 2
    CheckEqual info.IsColor, False
    info.DevModeFields = DM_COLOR
    CheckEqual info.IsColor, True
    info.DevModeColor = 0
    CheckEqual info.IsColor, False
End Sub

Sub IsBooklet_needs_the_exact_page_order()
    Dim info
    Test "IsBooklet_needs_the_exact_page_order"
    Set info = NewInfo()
    CheckEqual info.IsBooklet, False
    info.AttributeInfoPageOrderFlags = 2
    CheckEqual info.IsBooklet, True
    info.AttributeInfoPageOrderFlags = 3
    CheckEqual info.IsBooklet, False
End Sub

Sub JobInfoCopies_needs_the_field_bit()
    Dim info
    Test "JobInfoCopies_needs_the_field_bit"
    Set info = NewInfo()
    info.DevModeCopies = 3
    CheckLong info.JobInfoCopies, 1
    info.DevModeFields = DM_COPIES
    CheckLong info.JobInfoCopies, 3
    info.DevModeCopies = -3
    CheckLong info.JobInfoCopies, 1
End Sub

Sub Missing_originals_are_taken_from_the_pages()
    Dim info, copy
    Test "Missing_originals_are_taken_from_the_pages"
    Set info = NewInfo()
    info.Xml = "<WindowsPrintInfo><JobInfoPages>10</JobInfoPages><DevModeFields>256</DevModeFields>" & _
        "<DevModeCopies>3</DevModeCopies></WindowsPrintInfo>"
    CheckLong info.JobInfoOriginals, 10
    CheckLong info.JobInfoPages, 30
    Set copy = NewInfo()
    copy.Xml = XmlOf(info)
    CheckLong copy.JobInfoOriginals, 10
    CheckLong copy.JobInfoPages, 30
End Sub

Sub Xml_without_the_root_resets_the_record()
    Dim info
    Test "Xml_without_the_root_resets_the_record"
    Set info = NewInfo()
    info.DevModePaperSize = 9
    info.AttributeInfoPagesPerSide = 4
    On Error Resume Next
    info.Xml = "<x/>"
    Check Err.Number = E_FAIL, "error 0x" & Hex(Err.Number) & ", expected 0x" & Hex(E_FAIL)
    On Error GoTo 0
    CheckEqual XmlOf(info), XmlOf(NewInfo())
End Sub
