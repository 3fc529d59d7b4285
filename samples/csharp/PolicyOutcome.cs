// The project's tests compile this program but do not run it, because they have no .NET for Windows. They run
// policy_outcome.vbs, which makes the same calls.
//
// Stores a policy's outcome in a print job; the receiver of the job's XML acts on it.
//
//   dotnet run
//
// Interop.cs of the client kit declares the classes. The library of the program's bitness must be registered; on 64-bit
// Windows, dotnet builds a 64-bit program.
using System;
using System.Runtime.InteropServices;

static class PolicyOutcome
{
    // The library needs a single-threaded apartment.
    [STAThread]
    static int Main()
    {
        try
        {
            var sent = new JobObjects.PrintJob();
            sent.JobName = "Brochure";
            sent.JobContents.GenerateContentsFromPageCounterInfo("A4,Duplex,Color,PCL6", 8, 1, 8, 4);

            var policy = new JobObjects.PolicyResults();
            policy.PolicyId = 7;
            policy.PolicyName = "Office printing";
            policy.AddRuleViolation(2, "Confirm");
            sent.PolicyResults = policy;

            var received = new JobObjects.PrintJob();
            received.Xml = sent.Xml;

            var outcome = received.PolicyResults;
            if (!outcome.PolicyViolated || outcome.InformOnlyViolations || outcome.RuleViolations != "2")
                throw new InvalidOperationException("The receiver has another outcome than the sender.");
            Console.WriteLine("{0}: ask the user about rule {1}", received.JobName, outcome.RuleViolations);
            return 0;
        }
        catch (COMException failure)
        {
            // The message is the library's description of the failure.
            Console.Error.WriteLine("Failed: {0} (0x{1:X8})", failure.Message, failure.ErrorCode);
            return 1;
        }
    }
}
