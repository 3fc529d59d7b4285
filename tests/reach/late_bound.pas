{ A late-bound client: calls everything by name through IDispatch, with typed values and typed references. Returns 0
  only if all checks ran and passed. }
program late_bound;

{$mode objfpc}{$H+}

uses
  ActiveX, ComObj, SysUtils, Variants;

const
  ExpectedChecks = 23;
  GeneralFailure = HResult($80004005);
  WrongLogTarget = HResult($800710DD);

var
  Checks: Integer = 0;
  Failures: Integer = 0;

procedure Check(Condition: Boolean; const What: string);
begin
  Inc(Checks);
  if Condition then
    Exit;
  Inc(Failures);
  WriteLn('FAILED: ', What);
end;

procedure CheckText(const Actual, Expected: WideString; const What: string);
begin
  Check(Actual = Expected, What + ' is "' + UTF8Encode(Actual) + '", not "' + UTF8Encode(Expected) + '"');
end;

procedure CheckFailure(const Failure: EOleException; Code: HResult; const Text: string);
begin
  Check(Failure.ErrorCode = Code, 'the code ' + IntToHex(Failure.ErrorCode, 8) + ' of: ' + Failure.Message);
  CheckText(WideString(Failure.Message), WideString(Text), 'the message');
end;

procedure CheckProperties;
var
  Job: OleVariant;
  Time: TDateTime;
begin
  Job := CreateOleObject('Corvane.PrintJob');
  Job.UserName := WideString('J') + WideChar($FC) + WideString('rgen');
  CheckText(Job.UserName, WideString('J') + WideChar($FC) + WideString('rgen'), 'UserName');
  Job.JobSize := 184320;
  Check(Job.JobSize = 184320, 'JobSize');
  Job.VpnConnected := True;
  Check(VarType(Job.VpnConnected) = varBoolean, 'the type of VpnConnected');
  Check(Job.VpnConnected, 'VpnConnected');
  Time := EncodeDate(2010, 3, 4) + EncodeTime(5, 6, 7, 0);
  Job.JobTimeUtc := Time;
  Check(VarType(Job.JobTimeUtc) = varDate, 'the type of JobTimeUtc');
  Check(TDateTime(Job.JobTimeUtc) = Time, 'JobTimeUtc');
  Check(Pos('<JobTimeUtc>2010-03-04T05:06:07</JobTimeUtc>', string(Job.Xml)) > 0, 'JobTimeUtc in the Xml');
end;

procedure CheckChildren;
var
  Job, Received, Line: OleVariant;
begin
  Job := CreateOleObject('Corvane.PrintJob');
  Job.JobContents.GenerateContentsFromPageCounterInfo('A4,Duplex,B&W,PostScript', 12, 2, 24, 12);

  Received := CreateOleObject('Corvane.PrintJob.1');
  Received.Xml := WideString(Job.Xml);
  CheckText(Received.Xml, Job.Xml, 'the Xml of the copy');
  Check(Received.JobContents.JobCopyLines.Count = 1, 'Count');
  Line := Received.JobContents.JobCopyLines.Item(0);
  CheckText(Line.PaperSize, 'A4', 'PaperSize');
  Check(Line.Sheets = 12, 'Sheets');
  CheckText(Received.JobContents.DBCopyLines, '1,24,0,12,6', 'DBCopyLines');
end;

procedure CheckOutParameters;
var
  Contents: OleVariant;
  Paper, Dimensions, Pdl, Finishing, Page, Unmatched: WideString;
  IsColor: WordBool;
begin
  Contents := CreateOleObject('Corvane.JobContents');
  IsColor := False;
  Unmatched := Contents.MatchAttributes('A3,Color,Duplex,Hologram', Paper, Dimensions, Pdl, Finishing, Page, IsColor);
  CheckText(Paper, 'A3', 'PaperSize');
  CheckText(Dimensions, '2970,4200', 'PaperDimensions');
  Check(IsColor, 'IsColor');
  CheckText(Unmatched, 'Hologram', 'the unmatched words');
  Check(not Contents.DoAttributesMatch('A3,Hologram,Sparkle', Unmatched), 'DoAttributesMatch');
  CheckText(Unmatched, 'Hologram,Sparkle', 'UnmatchedAttributes');
end;

procedure CheckFailures;
var
  Job: OleVariant;
begin
  Job := CreateOleObject('Corvane.PrintJob');
  try
    Job.Xml := '<x/>';
    Check(False, 'a wrong Xml is refused');
  except
    on Failure: EOleException do
      CheckFailure(Failure, GeneralFailure, 'PrintJob element is missing.');
  end;
  try
    Check(Job.DeviceAddress = '', 'an address of no device is refused');
  except
    on Failure: EOleException do
      CheckFailure(Failure, WrongLogTarget,
        'The DeviceAddress property is not supported when the LogTargetType is None.');
  end;
  try
    Job.NoSuchProperty := 1;
    Check(False, 'an unknown name is refused');
  except
    on Failure: EOleError do
      CheckText(WideString(Failure.ClassName), 'EOleError', 'the failure of an unknown name');
  end;
end;

begin
  CoInitialize(nil);
  CheckProperties;
  CheckChildren;
  CheckOutParameters;
  CheckFailures;
  WriteLn(Checks, ' checks, ', Failures, ' failures');
  { The count catches skipped checks. }
  if (Failures <> 0) or (Checks <> ExpectedChecks) then
    Halt(1);
end.
