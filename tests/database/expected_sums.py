"""What the queries of database/queries must give for simulated jobs, summed from the jobs themselves."""
from collections import defaultdict
from decimal import ROUND_HALF_UP, Decimal

from simulated_jobs import printer_name

# database/*/schema.sql: paper code to the prices of a black-and-white page, a colour page and a sheet.
PRICES = {0: (Decimal("0.01"), Decimal("0.06"), Decimal("0.008")),
          4: (Decimal("0.02"), Decimal("0.12"), Decimal("0.016"))}


def pages(line):
    return line["bw"] + line["color"] + line["blank"]


def total(job, what=pages):
    return sum(what(line) for line in job["lines"])


def color(job):
    return total(job, lambda line: line["color"])


def sheets(job):
    return total(job, lambda line: line["sheets"])


def cost(job):
    def of_line(line):
        black, colored, sheet = PRICES.get(line["code"], PRICES[0])
        return line["bw"] * black + line["color"] * colored + line["sheets"] * sheet
    return total(job, of_line)


def user(job):
    is_plain = job["class"] != "PrintJob" or not job["domain"]
    return job["user"] if is_plain else f"{job['domain']}\\{job['user']}"


def printer(job):
    return f"Device {job['printer']}" if job["device"] else printer_name(job["printer"])


def outcome(job):
    policy = job["policy"]
    if policy is None:
        return "no policy"
    if policy["cancelled"]:
        return "cancelled"
    if not policy["violations"]:
        return "kept"
    return "informed" if set(policy["violations"].values()) == {"Inform"} else "violated"


def sums(jobs, key, *values):
    """Rows of a key, the number of jobs and sums."""
    table = defaultdict(lambda: [0] * (1 + len(values)))
    for job in jobs:
        row = table[key(job)]
        row[0] += 1
        for at, value in enumerate(values, 1):
            row[at] += value(job)
    return [(name, *row) for name, row in table.items()]


def by_paper(jobs):
    lines = [{"lines": [line]} for job in jobs for line in job["lines"]]
    return sums(lines, lambda part: part["lines"][0]["paper"], total, sheets)


def by_rule(jobs):
    table = defaultdict(lambda: [0, 0, Decimal()])
    for job in jobs:
        for rule in (job["policy"] or {"violations": {}})["violations"].items():
            table[rule][0] += 1
            table[rule][1] += total(job)
            table[rule][2] += cost(job)
    return [(*rule, count, number, amount.quantize(Decimal("0.01"), ROUND_HALF_UP))
            for rule, (count, number, amount) in table.items()]


def shares(jobs):
    number, colored = sum(map(total, jobs)), sum(map(color, jobs))
    duplex = sum(total(job, lambda line: pages(line) if line["duplex"] else 0) for job in jobs)

    def percent(part):
        return (Decimal(100) * part / number).quantize(Decimal("0.1"), ROUND_HALF_UP)
    return [(number, colored, duplex, percent(colored), percent(duplex))]


def of_queries(jobs):
    return {"totals": sums(jobs, lambda job: job["class"], total, sheets),
            "pages_by_user": sums(jobs, user, total, color, sheets),
            "pages_by_printer": sums(jobs, printer, total, color, sheets),
            "pages_by_paper": by_paper(jobs),
            "pages_by_month": sums(jobs, lambda job: job["time"].strftime("%Y-%m"), total, color),
            "color_and_duplex": shares(jobs),
            "policy_outcome": sums(jobs, outcome, total),
            "cost_by_rule": by_rule(jobs)}
