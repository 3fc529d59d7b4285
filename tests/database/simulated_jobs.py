"""Simulated records of a year, from a seed: users, printers, papers, colours, policies in plausible proportions.

Each job is a dictionary of what a report counts, with its XML. The sums that the tests expect come from these
dictionaries, never from the product.
"""
import random
from datetime import datetime, timedelta
from xml.sax.saxutils import escape, quoteattr

NAMESPACE = "http://schemas.corvane.example/OutputManagement"
YEAR = 2025
PRINTERS = 24
USERS = 180
DEPARTMENTS = ["SALES", "LEGAL", "WORKS", "OFFICE"]
# Name, code in the shipped catalogue, tenths of a millimetre, share of the jobs.
PAPERS = [("A4", 1, "2100,2970", 70), ("A3", 4, "2970,4200", 8), ("Letter", 2, "2159,2794", 10),
          ("A5", 6, "1480,2100", 4), ("Legal", 3, "2159,3556", 3), ("Envelope DL", 69, "1100,2200", 2),
          ("House Card", 0, "850,550", 1)]
PDLS = [("EMF", 30), ("PCL6", 40), ("PostScript", 20), ("PDF", 10)]
FINISHING = [("", 80), ("Staple", 15), ("Staple,Punch", 5)]
RULES = {1: "Inform", 2: "Inform", 3: "Ask", 4: "Deny"}
DOCUMENTS = ["Offer", "Minutes", "Übersicht", "Plan <draft>", 'The "final" version, 2nd', "R&D budget", "報告書"]
SIMPLEX, DUPLEX, COLOR, MONO = 1, 2, 4, 8


def printer_guid(number):
    return f"{{7D9A1B52-0000-4000-8000-{number:012X}}}"


def printer_name(number):
    return f"Printer {number:02}" + (" Müller" if number % 7 == 0 else "")


def printer_xml(number):
    return (f'<LogicalPrinter xmlns="{NAMESPACE}/LogicalPrinter" Version="7.0">'
            f"<LogicalPrinterGuid>{printer_guid(number)}</LogicalPrinterGuid><CustomerCode/><MachineGuid/>"
            f"<FirstTransactionDate>{YEAR}-01-01T08:00:00</FirstTransactionDate>"
            f"<LastTransactionDate>{YEAR}-12-31T18:00:00</LastTransactionDate>"
            f"<PrinterName>{printer_name(number)}</PrinterName><Location>Floor {number % 5}</Location>"
            f"<ColorCapable>{'true' if number % 3 else 'false'}</ColorCapable></LogicalPrinter>")


def weighted(generator, pairs):
    return generator.choices([pair[0] for pair in pairs], [pair[-1] for pair in pairs])[0]


class Simulation:
    def __init__(self, seed):
        self.random = random.Random(seed)
        self.number = 0

    def time(self):
        """Office hours, fewer jobs on weekends and in August."""
        while True:
            moment = datetime(YEAR, 1, 1) + timedelta(seconds=self.random.randrange(365 * 86400))
            keep = 0.05 if moment.weekday() > 4 else 1
            keep *= 0.5 if moment.month == 8 else 1
            keep *= 1 if 7 <= moment.hour < 19 else 0.03
            if self.random.random() < keep:
                return moment

    def copy_lines(self, is_color):
        papers = {weighted(self.random, [(paper, paper[-1]) for paper in PAPERS])
                  for _ in range(2 if self.random.random() < 0.06 else 1)}
        lines = []
        for name, code, dimensions, _ in sorted(papers):
            duplex = self.random.random() < 0.55
            pages = min(int(self.random.expovariate(1 / 6)) + 1, 400)
            color = self.random.randint(1, pages) if is_color else 0
            blank = 1 if self.random.random() < 0.04 else 0
            total = pages + blank
            words = ("Duplex" if duplex else "Simplex") + (",Color" if color else ",B&W")
            mask = (DUPLEX if duplex else SIMPLEX) | (COLOR if color else MONO)
            lines.append({"paper": name, "code": code, "dimensions": dimensions, "attributes": words, "mask": mask,
                          "duplex": duplex, "sheets": (total + 1) // 2 if duplex else total, "bw": pages - color,
                          "color": color, "blank": blank})
        return lines

    def policy(self):
        chance = self.random.random()
        if chance < 0.4:
            return None
        violations = {}
        if chance > 0.85:
            violations = {rule: RULES[rule] for rule in self.random.sample(sorted(RULES), self.random.randint(1, 2))}
        cancelled = "Deny" in violations.values() and self.random.random() < 0.8
        return {"id": 17, "name": "Save & share", "violations": violations, "cancelled": cancelled}

    def job(self):
        """One job; its class, version and form vary as in a grown installation."""
        self.number += 1
        kind = weighted(self.random, [("PrintJob", 88), ("CopyJob", 7), ("ScanJob", 3), ("FaxJob", 2)])
        user = min(int(self.random.expovariate(1 / 40)), USERS - 1)
        is_color = self.random.random() < 0.28
        job = {"class": kind, "guid": f"{{3F2504E0-4F89-41D3-9A0C-{self.number:012X}}}", "time": self.time(),
               "user": f"user{user:03}", "domain": DEPARTMENTS[user % len(DEPARTMENTS)],
               "printer": min(int(self.random.expovariate(1 / 6)), PRINTERS - 1), "name": "", "lines":
               self.copy_lines(is_color), "policy": self.policy(), "pdl": weighted(self.random, PDLS),
               "finishing": weighted(self.random, FINISHING), "copies": weighted(self.random, [(1, 8), (2, 1), (5, 1)])}
        job["version"] = "4.2"
        if kind == "PrintJob":
            job["version"] = weighted(self.random, [("7.26", 80), ("6.0", 12), ("4.1", 5), ("3.5", 3)])
            job["name"] = f"{self.random.choice(DOCUMENTS)} {self.number}"
            if job["version"] in ("4.1", "3.5"):
                job["domain"] = ""
            if job["version"] == "3.5":
                job["policy"] = None
        job["device"] = kind != "PrintJob" or (job["version"] == "7.26" and self.random.random() < 0.1)
        job["xml"] = print_job_xml(job) if kind == "PrintJob" else device_job_xml(job)
        return job


def contents_xml(job):
    lines = "".join(
        f"<CopyLine><PaperSize>{line['paper']}</PaperSize><PaperDimensions>{line['dimensions']}</PaperDimensions>"
        f"<Attributes>{escape(line['attributes'])}</Attributes><Sheets>{line['sheets']}</Sheets>"
        f"<PagesBW>{line['bw']}</PagesBW><PagesColor>{line['color']}</PagesColor>"
        f"<PagesBlank>{line['blank']}</PagesBlank></CopyLine>" for line in job["lines"])
    originals = sum(line["bw"] + line["color"] + line["blank"] for line in job["lines"])
    return (f'<JobContents xmlns="{NAMESPACE}/JobContents" Version="4.0"><JobCopyLines>{lines}</JobCopyLines>'
            f"<JobOriginals>{originals}</JobOriginals><JobCopies>{job['copies']}</JobCopies>"
            f"<JobPdl>{job['pdl']}</JobPdl><JobFinishing>{job['finishing']}</JobFinishing></JobContents>")


def policy_xml(policy):
    if policy is None:
        return ""
    rules = "".join(f'<Rule TriggerId="{rule}" Action={quoteattr(action)}/>'
                    for rule, action in policy["violations"].items())
    return (f'<PolicyResults xmlns="{NAMESPACE}/Policy" Version="4.0"><PolicyId>{policy["id"]}</PolicyId>'
            f"<PolicyName>{escape(policy['name'])}</PolicyName>"
            + ("<Cancelled>true</Cancelled>" if policy["cancelled"] else "")
            + (f"<RuleViolations>{rules}</RuleViolations>" if rules else "") + "</PolicyResults>")


def print_job_xml(job):
    """Older versions lack the newer elements."""
    version = tuple(map(int, job["version"].split(".")))
    domain = f"<UserDomainName>{job['domain']}</UserDomainName>" if version >= (6, 0) else ""
    desktop = ("<DesktopUserName>desk</DesktopUserName><DesktopUserDomainName>DESK</DesktopUserDomainName>"
               if version >= (7, 26) else "")
    if version < (4, 2):
        target = f"<LogicalPrinterGuid>{printer_guid(job['printer'])}</LogicalPrinterGuid>"
    elif job["device"]:
        target = f'<LogTarget Type="Device">{job["printer"]}</LogTarget>'
    else:
        target = f'<LogTarget Type="LogicalPrinter">{printer_guid(job["printer"])}</LogTarget>'
    application = "<ApplicationName>winword.exe</ApplicationName>" if version >= (4, 2) else ""
    return (f'<PrintJob xmlns="{NAMESPACE}/PrintJob" Version="{job["version"]}"><JobGuid>{job["guid"]}</JobGuid>'
            f"<CustomerCode>C{job['printer']}</CustomerCode><UserName>{job['user']}</UserName>{domain}"
            f"<FromSystemUser>false</FromSystemUser>{desktop}"
            f"<JobTimeLocal>{job['time'].isoformat()}.125</JobTimeLocal>"
            f"<JobTimeUtc>{(job['time'] - timedelta(hours=1)).isoformat()}</JobTimeUtc><JobSize>184320</JobSize>"
            f"<JobName>{escape(job['name'])}</JobName><JobFileName>C:\\spool\\00042.SPL</JobFileName>"
            f"<JobDataType>NT EMF 1.008</JobDataType>{target}<MachineName>PC-0117</MachineName>{application}"
            "<VpnConnected>false</VpnConnected><JobContentsSource>2</JobContentsSource>"
            f"<JobContentsDiscardCount>0</JobContentsDiscardCount>{contents_xml(job)}"
            "<PageCounterInfo><PageCounterErrorMessage/><PageCounterResult>ok</PageCounterResult></PageCounterInfo>"
            "<WindowsPrintInfo><JobInfoPages>3</JobInfoPages><JobInfoOriginals>3</JobInfoOriginals>"
            "<DevModeFields>6400</DevModeFields><DevModeOrientation>1</DevModeOrientation>"
            "<DevModePaperSize>9</DevModePaperSize><DevModePaperLength>2970</DevModePaperLength>"
            "<DevModePaperWidth>2100</DevModePaperWidth><DevModeScale>100</DevModeScale>"
            "<DevModeCopies>1</DevModeCopies><DevModeDefaultSource>15</DevModeDefaultSource>"
            "<DevModePrintQuality>600</DevModePrintQuality><DevModeColor>1</DevModeColor>"
            "<DevModeDuplex>2</DevModeDuplex><DevModeTumble>0</DevModeTumble>"
            "<DevModeXResolution>600</DevModeXResolution><DevModeYResolution>600</DevModeYResolution>"
            "<DevModeTtOption>1</DevModeTtOption><DevModeCollate>1</DevModeCollate>"
            "<DevModeFormName>A4</DevModeFormName><DevModeMediaType>1</DevModeMediaType>"
            "<AttributeInfoPagesPerSide>1</AttributeInfoPagesPerSide>"
            "<AttributeInfoPageOrderFlags>0</AttributeInfoPageOrderFlags></WindowsPrintInfo>"
            f"{policy_xml(job['policy'])}</PrintJob>")


def device_job_xml(job):
    own = {"CopyJob": "",
           "ScanJob": "<DestinationType>1</DestinationType><Destination>a@example.org</Destination>"
                      "<Duration>4</Duration>",
           "FaxJob": "<PhoneNumber>+49 30 1</PhoneNumber><RemoteStationId>R</RemoteStationId>"
                     "<Duration>9</Duration>"}[job["class"]]
    return (f'<{job["class"]} xmlns="{NAMESPACE}/{job["class"]}" Version="4.2"><JobGuid>{job["guid"]}</JobGuid>'
            f"<CustomerCode/><IdentifierType>1</IdentifierType><IdentifierData>{job['user']}</IdentifierData>"
            f"<DeviceId>{job['printer']}</DeviceId><JobTimeLocal>{job['time'].isoformat()}</JobTimeLocal>"
            f"{own}{contents_xml(job)}{policy_xml(job['policy'])}</{job['class']}>")


def damaged(xml, generator):
    """The record with one of the damages of interrupted writes and bad transfers."""
    kind = generator.randrange(5)
    if kind == 0:
        return xml[:generator.randrange(20, len(xml) - 20)]  # cut off
    if kind == 1:
        at = xml.index("</JobOriginals>")
        return xml[:at] + xml[at + len("</JobOriginals>"):]  # an end tag is missing
    if kind == 2:
        return xml.replace("<JobContents ", "<Job<Contents ", 1)
    if kind == 3:
        return xml.replace(' Version="', ' Version="x', 1)  # the library refuses it
    return xml.replace("</JobGuid>", "</JobGuld>", 1)


def write_jobs(path, count, seed, records_per_file=0, damage=0.0):
    """Writes jobs and printers below a folder, or all into one file per `records_per_file`. Returns the undamaged jobs
    and the number of damaged ones."""
    simulation = Simulation(seed)
    spoiler = random.Random(seed + 1)
    path.mkdir(parents=True, exist_ok=True)
    (path / "printers.xml").write_text("\n".join(printer_xml(n) for n in range(PRINTERS)), encoding="utf-8")
    jobs, bad, output = [], 0, None
    for number in range(count):
        if records_per_file == 0 or number % records_per_file == 0:
            if output:
                output.close()
            output = open(path / f"jobs{number:07}.xml", "w", encoding="utf-8", newline="\n")
        job = simulation.job()
        xml = job.pop("xml")
        if spoiler.random() < damage:
            xml = damaged(xml, spoiler)
            bad += 1
        else:
            jobs.append(job)
        output.write(xml + "\n")
    output.close()
    return jobs, bad
