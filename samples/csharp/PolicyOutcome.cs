// NOT BUILT OR RUN by the project's tests, which have no .NET. They run policy_outcome.vbs, which makes the same calls.
//
// Stores a policy's outcome in a print job; the receiver of the job's XML acts on it.
//
//   dotnet run
//
// Late binding needs no interop assembly. The library of the program's bitness must be registered; on 64-bit Windows,
// dotnet builds a 64-bit program.
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
            dynamic sent = Create("PrintJob");
            sent.JobName = "Brochure";
            sent.JobContents.GenerateContentsFromPageCounterInfo("A4,Duplex,Color,PCL6", 8, 1, 8, 4);

            dynamic policy = Create("PolicyResults");
            policy.PolicyId = 7;
            policy.PolicyName = "Office printing";
            policy.AddRuleViolation(2, "Confirm");
            sent.PolicyResults = policy;

            dynamic received = Create("PrintJob");
            received.Xml = sent.Xml;

            dynamic outcome = received.PolicyResults;
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

    static object Create(string name)
    {
        return Activator.CreateInstance(Type.GetTypeFromProgID("Corvane." + name, true));
    }
}
