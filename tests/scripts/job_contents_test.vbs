' Job contents and copy lines with the delivered catalogue.

Sub RunTests()
    New_is_empty
    Report_on_one_paper_size_becomes_one_line
    Report_in_colour_counts_colour_pages
    Report_without_counts_gets_one_page
    Report_with_several_paper_sizes_becomes_ordered_lines
    Report_lines_on_the_same_paper_are_merged
    Report_can_be_read_without_colour_words
    Word_in_another_case_takes_the_catalogue_spelling
    Unknown_word_is_ignored
    Default_page_attributes_can_be_switched_off
    Database_text_reads_back
    Database_text_skips_invalid_entries
    Database_text_stores_blank_pages_as_black_and_white
    JobCopyLines_is_a_copy
    Item_is_a_copy
    CopyLines_are_merged_by_paper_size
    CopyLine_has_derived_values
    CopyLine_in_the_older_form_is_read
    Xml_reads_back_unchanged
    IsPdlEMF_is_case_sensitive
    Typed_out_parameters_reject_script_variables
    Unknown_words_have_no_codes
End Sub

Function NewContents()
    Set NewContents = CreateObject("Corvane.JobContents")
End Function

' Expects "paper attributes sheets black-and-white colour blank".
Sub CheckLine(contents, index, expected)
    Dim line
    Set line = contents.JobCopyLines.Item(index)
    CheckEqual line.PaperSize & " " & line.Attributes & " " & line.Sheets & " " & line.PagesBW & " " & _
        line.PagesColor & " " & line.PagesBlank, expected
End Sub

Sub New_is_empty()
    Dim contents
    Test "New_is_empty"
    Set contents = NewContents()
    CheckEqual contents.Version, "4.0"
    CheckLong contents.JobCopyLines.Count, 0
    CheckLong contents.JobOriginals, 0
    CheckLong contents.JobCopies, 0
    CheckEqual contents.JobPdl, ""
    CheckEqual contents.JobFinishing, ""
    CheckEqual contents.DBCopyLines, ""
    CheckEqual contents.GenerateDefaultPageAttributes, True
    CheckContains XmlOf(contents), """ Version=""4.0""><JobCopyLines></JobCopyLines><JobOriginals>0</JobOriginals>"
End Sub

Sub Report_on_one_paper_size_becomes_one_line()
    Dim contents
    Test "Report_on_one_paper_size_becomes_one_line"
    Set contents = NewContents()
    contents.GenerateContentsFromPageCounterInfo "A4,Duplex,B&W,PostScript,Staple", 12, 2, 24, 12
    CheckLong contents.JobCopyLines.Count, 1
    CheckLine contents, 0, "A4 Duplex,B&W 12 24 0 0"
    CheckLong contents.JobOriginals, 12
    CheckLong contents.JobCopies, 2
    CheckEqual contents.JobPdl, "PostScript"
    CheckEqual contents.JobFinishing, "Staple"
    CheckLong contents.TotalPages, 24
    CheckLong contents.TotalPagesBW, 24
    CheckLong contents.TotalPagesColor, 0
    CheckEqual contents.ContainsDuplex, True
    Check contents.DBPdl > 0, "PostScript has no code"
    Check contents.DBFinishing > 0, "Staple has no code"
End Sub

Sub Report_in_colour_counts_colour_pages()
    Dim contents
    Test "Report_in_colour_counts_colour_pages"
    Set contents = NewContents()
    contents.GenerateContentsFromPageCounterInfo "A3,Simplex,Color", 0, -3, 7, 0
    CheckLine contents, 0, "A3 Simplex,Color 1 0 7 0"
    CheckLong contents.JobOriginals, 1
    CheckLong contents.JobCopies, 1
    CheckEqual contents.ContainsDuplex, False
End Sub

Sub Report_without_counts_gets_one_page()
    Dim contents
    Test "Report_without_counts_gets_one_page"
    Set contents = NewContents()
    contents.GenerateContentsFromPageCounterInfo "A4,Simplex,B&W", 1, 1, 0, 0
    CheckLine contents, 0, "A4 Simplex,B&W 1 1 0 0"
    contents.GenerateContentsFromPageCounterInfo "A4,Simplex,Color", 1, 1, 0, 0
    CheckLine contents, 0, "A4 Simplex,Color 1 0 1 0"
End Sub

Sub Report_with_several_paper_sizes_becomes_ordered_lines()
    Dim contents, pageAttributes
    Test "Report_with_several_paper_sizes_becomes_ordered_lines"
    Set contents = NewContents()
    pageAttributes = contents.GenerateGeneralContentsFromPageCounterInfo("A4,A3,Duplex,Color", 5, 1, False)
    CheckEqual pageAttributes, "Duplex,Color"
    contents.GenerateCopyLineFromPageCounterInfo "Letter,Simplex,Color", 0, 3, 1, 4
    contents.GenerateCopyLineFromPageCounterInfo "A3,Duplex,B&W", 2, 0, 0, 1
    CheckLong contents.JobCopyLines.Count, 2
    CheckLine contents, 0, "A3 Duplex,B&W 1 2 0 0"
    CheckLine contents, 1, "Letter Simplex,Color 4 0 3 1"
    CheckLong contents.TotalPages, 6
End Sub

Sub Report_lines_on_the_same_paper_are_merged()
    Dim contents
    Test "Report_lines_on_the_same_paper_are_merged"
    Set contents = NewContents()
    contents.GenerateCopyLineFromPageCounterInfo "A4,Duplex,B&W", 10, 0, 1, 6
    contents.GenerateCopyLineFromPageCounterInfo "A4,Simplex,Color", 0, 2, 0, 2
    CheckLong contents.JobCopyLines.Count, 1
    CheckLine contents, 0, "A4 Duplex,B&W 8 10 2 1"
End Sub

Sub Report_can_be_read_without_colour_words()
    Dim contents
    Test "Report_can_be_read_without_colour_words"
    Set contents = NewContents()
    CheckEqual contents.GenerateGeneralContentsFromPageCounterInfo("A4,Duplex,Color", 1, 1, True), "Duplex"
    CheckEqual contents.GenerateGeneralContentsFromPageCounterInfo("A4,Simplex,B&W", 1, 1, True), "Simplex"
End Sub

Sub Word_in_another_case_takes_the_catalogue_spelling()
    Dim contents
    Test "Word_in_another_case_takes_the_catalogue_spelling"
    Set contents = NewContents()
    contents.GenerateContentsFromPageCounterInfo "A4,DUPLEX,b&w,postscript,STAPLE", 1, 1, 2, 1
    CheckLine contents, 0, "A4 Duplex,B&W 1 2 0 0"
    CheckEqual contents.JobPdl, "PostScript"
    CheckEqual contents.JobFinishing, "Staple"
End Sub

Sub Unknown_word_is_ignored()
    Dim contents
    Test "Unknown_word_is_ignored"
    Set contents = NewContents()
    contents.GenerateContentsFromPageCounterInfo "Glitter,A3,Duplex,B&W", 1, 1, 2, 1
    CheckLine contents, 0, "A3 Duplex,B&W 1 2 0 0"
End Sub

Sub Default_page_attributes_can_be_switched_off()
    Dim contents
    Test "Default_page_attributes_can_be_switched_off"
    Set contents = NewContents()
    contents.GenerateDefaultPageAttributes = False
    CheckEqual contents.GenerateGeneralContentsFromPageCounterInfo("A4,Duplex", 1, 1, False), "Duplex"
    contents.GenerateDefaultPageAttributes = True
    CheckContains contents.GenerateGeneralContentsFromPageCounterInfo("A4,Duplex", 1, 1, False), "Duplex,"
End Sub

Sub Database_text_reads_back()
    Dim written, read
    Test "Database_text_reads_back"
    Set written = NewContents()
    written.GenerateCopyLineFromPageCounterInfo "A4,Duplex,B&W", 10, 0, 0, 5
    written.GenerateCopyLineFromPageCounterInfo "Letter,Simplex,Color", 1, 2, 0, 3
    written.JobPdl = "PostScript"
    written.JobFinishing = "Staple"
    CheckLong UBound(Split(written.DBCopyLines, ";")), 1

    Set read = NewContents()
    read.GenerateContentsFromDBInfo written.DBCopyLines, 12, -3, written.DBPdl, written.DBFinishing
    CheckLong read.JobCopyLines.Count, 2
    CheckLine read, 0, "A4 Duplex,B&W 5 10 0 0"
    CheckLine read, 1, "Letter Simplex,Color 3 1 2 0"
    CheckEqual read.DBCopyLines, written.DBCopyLines
    CheckLong read.JobOriginals, 12
    CheckLong read.JobCopies, -3
    CheckEqual read.JobPdl, "PostScript"
    CheckEqual read.JobFinishing, "Staple"
End Sub

Sub Database_text_skips_invalid_entries()
    Dim contents
    Test "Database_text_skips_invalid_entries"
    Set contents = NewContents()
    contents.GenerateContentsFromDBInfo "0,1,1,1,1;1,1,1,1,0;;0x1,5,0,0,1", 1, 1, 1, 0
    CheckLong contents.JobCopyLines.Count, 1
    CheckLong contents.TotalPagesBW, 5
    CheckLong contents.JobCopyLines.Item(0).Sheets, 0
    contents.GenerateContentsFromDBInfo "", 1, 1, 1, 0
    CheckLong contents.JobCopyLines.Count, 0
End Sub

Sub Database_text_stores_blank_pages_as_black_and_white()
    Dim contents
    Test "Database_text_stores_blank_pages_as_black_and_white"
    Set contents = NewContents()
    contents.GenerateCopyLineFromPageCounterInfo "A4,Duplex,B&W", 3, 0, 2, 3
    contents.GenerateContentsFromDBInfo contents.DBCopyLines, 1, 1, 1, 0
    CheckLine contents, 0, "A4 Duplex,B&W 3 5 0 0"
End Sub

Sub JobCopyLines_is_a_copy()
    Dim contents, lines
    Test "JobCopyLines_is_a_copy"
    Set contents = NewContents()
    contents.GenerateCopyLineFromPageCounterInfo "A4,Duplex,B&W", 10, 0, 0, 5
    Set lines = contents.JobCopyLines
    lines.Clear
    CheckLong lines.Count, 0
    CheckLong contents.JobCopyLines.Count, 1
End Sub

Sub Item_is_a_copy()
    Dim lines, line
    Test "Item_is_a_copy"
    Set lines = CreateObject("Corvane.CopyLines")
    lines.Xml = "<JobCopyLines><CopyLine><PaperSize>A4</PaperSize></CopyLine></JobCopyLines>"
    Set line = lines.Item(0)
    line.PaperSize = "A3"
    CheckEqual lines.Item(0).PaperSize, "A4"
End Sub

Sub CopyLines_are_merged_by_paper_size()
    Dim lines
    Test "CopyLines_are_merged_by_paper_size"
    Set lines = CreateObject("Corvane.CopyLines")
    lines.Xml = "<JobCopyLines>" & LineXml("Letter", "Duplex", 1) & LineXml("A4", "Simplex", 2) & _
        LineXml("Letter", "Simplex", 4) & "</JobCopyLines>"
    CheckLong lines.Count, 2
    CheckEqual lines.Item(0).PaperSize, "A4"
    CheckEqual lines.Item(1).PaperSize, "Letter"
    CheckEqual lines.Item(1).Attributes, "Duplex"
    CheckLong lines.Item(1).PagesBW, 5
    CheckLong lines.TotalPages, 7
End Sub

Function LineXml(paper, attributes, pages)
    LineXml = "<CopyLine><PaperSize>" & paper & "</PaperSize><Attributes>" & attributes & "</Attributes>" & _
        "<PagesBW>" & pages & "</PagesBW></CopyLine>"
End Function

Sub CopyLine_has_derived_values()
    Dim line
    Test "CopyLine_has_derived_values"
    Set line = CreateObject("Corvane.CopyLine")
    CheckEqual line.IsColor, False
    line.PagesBW = 1
    line.PagesColor = 2
    line.PagesBlank = 4
    line.Sheets = -1
    CheckLong line.PagesTotal, 7
    CheckLong line.Sheets, 0
    CheckEqual line.IsColor, True
    line.Attributes = "NoDuplex"
    CheckEqual line.IsDuplex, True
    line.Attributes = "duplex"
    CheckEqual line.IsDuplex, False
    line.PaperSize = "a4"
    Check line.DBPaperSize > 0, "a4 has no code"
    line.PaperSize = "Tablecloth"
    CheckLong line.DBPaperSize, 0
End Sub

Sub CopyLine_in_the_older_form_is_read()
    Dim line
    Test "CopyLine_in_the_older_form_is_read"
    Set line = CreateObject("Corvane.CopyLine")
    line.Xml = "<CopyLine><PageAttributes>Duplex,B&amp;W</PageAttributes><Pages>5</Pages></CopyLine>"
    CheckLong line.PagesBW, 5
    CheckLong line.PagesColor, 0
    CheckEqual line.Attributes, "Duplex,"
    line.Xml = "<CopyLine><PageAttributes>Duplex,Color</PageAttributes><Pages>5</Pages></CopyLine>"
    CheckLong line.PagesBW, 0
    CheckLong line.PagesColor, 5
End Sub

Sub Xml_reads_back_unchanged()
    Dim written, read
    Test "Xml_reads_back_unchanged"
    Set written = NewContents()
    written.GenerateContentsFromPageCounterInfo "A4,Duplex,B&W,PostScript,Staple", 12, 2, 24, 12
    Set read = NewContents()
    read.Xml = XmlOf(written)
    CheckEqual XmlOf(read), XmlOf(written)
    CheckLine read, 0, "A4 Duplex,B&W 12 24 0 0"
    read.Xml = "<JobContents><JobCopyLines/></JobContents>"
    CheckEqual read.Version, "4.0"
    CheckLong read.JobOriginals, 0
End Sub

Sub IsPdlEMF_is_case_sensitive()
    Dim contents
    Test "IsPdlEMF_is_case_sensitive"
    Set contents = NewContents()
    CheckEqual contents.IsPdlEMF, False
    contents.JobPdl = "NT EMF 1.008"
    CheckEqual contents.IsPdlEMF, True
    contents.JobPdl = "emf"
    CheckEqual contents.IsPdlEMF, False
End Sub

Sub Typed_out_parameters_reject_script_variables()
    Dim contents, paper, dimensions, pdl, finishing, page, colour, left
    Test "Typed_out_parameters_reject_script_variables"
    Set contents = NewContents()
    On Error Resume Next
    left = contents.MatchAttributes("A4,Hologram", paper, dimensions, pdl, finishing, page, colour)
    CheckEqual Err.Number, CLng(13) ' type mismatch
    Err.Clear
    contents.DoAttributesMatch "A4,Hologram", left
    CheckEqual Err.Number, CLng(13) ' type mismatch
    Err.Clear
End Sub

Sub Unknown_words_have_no_codes()
    Dim line, contents, defaultPdl
    Test "Unknown_words_have_no_codes"
    Set line = CreateObject("Corvane.CopyLine")
    line.PaperSize = "Hologram"
    CheckEqual line.DBPaperSize, CLng(0)
    line.PaperSize = "A4"
    CheckEqual line.DBPaperSize <> 0, True
    line.Attributes = "Hologram"
    CheckEqual line.DBAttributes, CLng(0)
    line.Attributes = "Duplex"
    CheckEqual line.DBAttributes <> 0, True
    Set contents = NewContents()
    contents.JobFinishing = "Hologram"
    CheckEqual contents.DBFinishing, CLng(0)
    contents.JobFinishing = "Staple"
    CheckEqual contents.DBFinishing <> 0, True
    defaultPdl = contents.DBPdl
    contents.JobPdl = "Hologram"
    CheckEqual contents.DBPdl, defaultPdl
    contents.JobPdl = "PDF"
    CheckEqual contents.DBPdl <> defaultPdl, True
End Sub
