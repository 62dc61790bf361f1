#!/usr/bin/env python3
"""Random orders through the program, compared with a model of what they cost.

random_orders.py PROGRAM [--orders N] [--seed S]

The model is written from the sections "Units", "Sales prices", "Purchase prices" and "What an order costs" of
docs/standalone-erp.md and calculates with fractions, so that no rounding of its own can agree with one of the
program. Every line and every total is compared; the seed of a failure repeats it.
"""
import argparse
import datetime
import json
import os
import random
import sqlite3
import subprocess
import sys
import tempfile
from fractions import Fraction

RATE_CHANGE = datetime.date(2026, 11, 10)
FIRST_DAY = datetime.date(2026, 11, 1)
TAX_FREE, REDUCED, FULL, RAISED, UNKNOWN, WITHOUT_RATE = 1, 2, 3, 4, 5, 6
TAX_KEYS = {  # of customer and article: before the change, from it on
    ("IN", "V"): (FULL, RAISED), ("IN", "E"): (REDUCED, FULL), ("IN", "F"): (TAX_FREE, TAX_FREE),
    ("EU", "V"): (TAX_FREE, TAX_FREE), ("EU", "E"): (TAX_FREE, REDUCED), ("EU", "F"): (TAX_FREE, TAX_FREE),
    ("DR", "V"): (UNKNOWN, UNKNOWN), ("DR", "E"): (TAX_FREE, TAX_FREE), ("DR", "F"): (WITHOUT_RATE, WITHOUT_RATE)}
RATES = {TAX_FREE: "0", REDUCED: "7", FULL: "19", RAISED: "20.5", WITHOUT_RATE: None}
CONVERSIONS = [  # article, unit, base unit, factor
    ("", "KT", "ST", "12"), ("", "PAL", "ST", "480"), ("", "PAL", "KT", "40"), ("", "KG", "G", "1000"),
    ("", "G", "ROL", "0"), ("", "ST", "ROL", "-1"), ("A1", "KT", "ST", "6"), ("A2", "ST", "KT", "0.125"),
    ("A3", "KT", "ST", "0"), ("A4", "G", "KG", "0.001"), ("A5", "ROL", "M", "2.5"), ("A6", "M", "ROL", "0.16"),
    ("A7", "BOX", "ST", "1000")]
MEANINGS = {"Karton": "KT", "Stück": "ST", "Gramm": "G"}
UNITS_OF_KIND = [["ST", "KT", "PAL", "BOX", "", "Karton", "Stück", "FASS"], ["KG", "G", "Gramm", ""],
                 ["M", "ROL", "", "FASS"]]
VALID_FROM = ["", None, "20260101000000", "20261105", "20261110000000", "20261120093000", "20270101000000",
              "01.01.2026", "01.01.2027", "20261131000000", "bald"]
SOURCES = ["Kundenpreis", "Preisliste", "Grundpreis"]


def exact(number):
    """What was typed, not the binary number next to it."""
    return None if number is None else Fraction(str(number))


def cents(amount):
    """Rounded to cents, halves away from zero."""
    whole, rest = divmod(abs(amount) * 100, 1)
    return Fraction(whole + (1 if rest * 2 >= 1 else 0), 100) * (1 if amount >= 0 else -1)


class OrderFails(Exception):
    pass


class Model:
    def __init__(self, data):
        self.data = data
        self.factors = {(a, u, b): exact(f) for a, u, b, f in CONVERSIONS}
        self.converted = self.scaled = self.left_out = self.ties = 0

    # Units

    def ratio(self, article, unit, base):
        """How many base units one unit is."""
        if unit.upper() == base.upper():
            return Fraction(1)
        for owner in (article, ""):
            stated = self.factors.get((owner, unit, base))
            if stated is not None and stated > 0:
                return stated
            reverse = self.factors.get((owner, base, unit))
            if reverse is not None and reverse > 0:
                return 1 / reverse
        return None

    # Prices

    @staticmethod
    def begin(text):
        """The moment from which a row holds; None for one that nobody can date."""
        if not text:
            return ""
        if not text.isdigit() or len(text) not in (8, 14):
            return None
        try:
            datetime.datetime.strptime(text.ljust(14, "0"), "%Y%m%d%H%M%S")
        except ValueError:
            return None
        return text.ljust(14, "0")

    def choose(self, rows, article, quantity, unit, day):
        """The row that holds, with its price, calculated price and price unit in the unit asked for."""
        for own in (True, False):
            best = None
            for row in rows:
                if (row["unit"] == "" or row["unit"] == unit) != own:
                    continue
                ratio = Fraction(1) if own else self.ratio(article, unit, row["unit"])
                begin = self.begin(row["from"])
                if begin is None:
                    self.left_out += 1
                if ratio is None or begin is None or begin[:8] > day.strftime("%Y%m%d"):
                    continue
                step = exact(row["step"] or 0) / ratio
                if step > abs(quantity):
                    continue
                price = self.in_unit(row, ratio)
                per_unit = price[0] / price[2] if price[2] else price[0]
                rank = (step, begin, -per_unit)
                if best and rank[:2] == best[0][:2]:
                    self.ties += 1
                if best and rank == best[0]:
                    raise AssertionError("the samples hold two rows of which the page does not say which counts")
                if best is None or rank > best[0]:
                    best = (rank, row, price, ratio)
            if best:
                self.converted += best[3] != 1
                return best[1], best[2]
        return None

    def in_unit(self, row, ratio):
        price, calculated = exact(row["price"]), exact(row["calculated"] or 0)
        unit = Fraction(1) if row["priceUnit"] is None else exact(row["priceUnit"])
        if ratio >= 1 and all((each * ratio * 10000).denominator == 1 for each in (price, calculated)):
            return price * ratio, calculated * ratio, unit
        self.scaled += 1
        return price, calculated, unit / ratio

    def sales_price(self, customer, article, quantity, unit, day):
        rows = [row for row in self.data.prices if row["article"] == article]
        levels = [[row for row in rows if row["customer"] == customer["number"]],
                  [row for row in rows if not row["customer"] and row["list"] and row["list"] == customer["list"]],
                  [row for row in rows if not row["customer"] and not row["list"]]]
        for source, level in zip(SOURCES, levels):
            found = self.choose(level, article, quantity, unit, day)
            if found:
                if found[1][2] == 0:
                    raise OrderFails("the price unit is 0")
                return source, *found
        return None

    @staticmethod
    def discount_rate(kind, stages):
        percents = [exact(value or 0) for mark, value in stages if mark != "B"]
        if kind == "S":
            return sum(percents, Fraction(0))
        left = Fraction(100)
        for percent in percents:
            left -= left * percent / 100
        return 100 - left

    @staticmethod
    def discounted(amount, kind, stages):
        left = amount
        for mark, value in stages:
            value = exact(value or 0)
            if mark == "B":
                sign = 1 if amount > 0 else -1 if amount < 0 else 0
                left -= sign * min(value, max(left * sign, 0))
            else:
                left -= (amount if kind == "S" else left) * value / 100
        return left

    # Orders

    def line(self, order, position):
        customer, day = order["customer"], order["day"]
        article = self.data.articles[position["Artikelnummer"]]
        quantity = exact(position["Menge"])
        typed = position.get("Mengeneinheit", "")
        unit = MEANINGS.get(typed, typed) or article["unit"]
        kind, stages, source = None, [(None, 0)] * 3, None
        found = self.sales_price(customer, article["number"], quantity, unit, day)
        if found:
            source, row, (price, calculated, price_unit) = found
            kind, stages = row["kind"], row["stages"]
            rate = self.discount_rate(kind, stages)
        else:
            price = calculated = exact(position.get("Preis", 0))
            price_unit = exact(position.get("Preiseinheit", 0)) or Fraction(1)
            rate = exact(position.get("Rabatt", 0))
            if rate:
                kind, stages = "A", [("P", rate), (None, 0), (None, 0)]
        keys = TAX_KEYS[customer["tax"] or "IN", article["tax"]]
        key = keys[1] if day >= RATE_CHANGE else keys[0]
        if key in RATES and RATES[key] is None:
            raise OrderFails("the tax key has no rate")
        expected = {
            "Menge": quantity, "Mengeneinheit": unit, "Preis": price, "KalkPreis": calculated,
            "Preiseinheit": price_unit, "Rabatt": rate, "Preisfindung": source, "KZRabattart": kind,
            "MwSt_Konto": str(key), "MwSt_Satz": exact(RATES.get(key, "0")),
            "PosGewicht": exact(article["weight"]) * quantity}
        for i, (mark, value) in enumerate(stages, 1):
            expected[f"KZRabatt{i}"] = mark
            expected[f"Rabatt{i}"] = exact(value or 0)
        expected.update(self.purchase(article, quantity, unit, day))
        amount = None
        if article["hasAmount"] != 0:
            amount = cents(self.discounted(quantity * price / price_unit, kind, stages))
        return expected, amount, article["discountable"] == 1

    def purchase(self, article, quantity, sales_unit, day):
        nothing = {"EKPreis": None, "EKPreiseinheit": None, "EKRabatt": None, "EKRabattart": None}
        unit = article["purchaseUnit"] or article["unit"]
        ratio = self.ratio(article["number"], unit, sales_unit)
        if not article["supplier"] or ratio is None:
            return nothing
        rows = [row for row in self.data.purchases if row["article"] == article["number"] and
                row["supplier"] == article["supplier"] and row["priceUnit"] != 0]
        found = self.choose(rows, article["number"], quantity / ratio, unit, day)
        if not found:
            return nothing
        row, (price, _, price_unit) = found
        return {"EKPreis": price, "EKPreiseinheit": price_unit, "EKRabattart": row["kind"],
                "EKRabatt": self.discount_rate(row["kind"], row["stages"])}

    def order(self, order):
        """Lines by number and totals."""
        lines, groups, weight = {}, {}, Fraction(0)
        for position in order["positions"]:
            expected, amount, discountable = self.line(order, position)
            lines[position["Positionsnummer"]] = expected
            weight += expected["PosGewicht"]
            if amount is None:
                continue
            group = groups.setdefault(expected["MwSt_Konto"], [expected["MwSt_Satz"], Fraction(0), Fraction(0)])
            group[1 if discountable else 2] += amount
        net = tax = gross = Fraction(0)
        discount = exact(order["customer"]["discount"] or 0)
        for rate, discountable, fixed in groups.values():
            total = discountable - cents(discountable * discount / 100) + fixed
            if order["customer"]["gross"]:
                part = cents(total * rate / (100 + rate))
                net, tax, gross = net + total - part, tax + part, gross + total
            else:
                part = cents(total * rate / 100)
                net, tax, gross = net + total, tax + part, gross + total + part
        return lines, {"Gesamtnetto": net, "GesamtMwSt": tax, "Gesamtbrutto": gross, "GesamtGewicht": weight}


class Samples:
    """Few customers, articles and quantities, so that the rules meet each other."""

    def __init__(self, rng, orders):
        self.rng = rng
        self.articles = {f"A{i}": self.article(f"A{i}", i) for i in range(1, 25)}
        self.customers = [self.customer(f"{50000 + i}") for i in range(12)]
        self.prices = [row for article in self.articles.values() for row in self.sales_rows(article)]
        self.purchases = [row for article in self.articles.values() for row in self.purchase_rows(article)]
        self.orders = [self.order(i) for i in range(1, orders + 1)]

    def article(self, number, i):
        rng = self.rng
        kind = 0 if i in (1, 2, 3, 7) else 1 if i == 4 else 2 if i in (5, 6) else rng.randrange(3)
        return {"number": number, "kind": kind, "unit": ["ST", "KG", "M"][kind], "tax": rng.choice("VVVEF"),
                "hasAmount": rng.choice([1, 1, 1, None, 0]), "discountable": rng.choice([1, 1, 0, None]),
                "weight": rng.choice([0, 0.125, 1.5, 0.1, 3]), "supplier": rng.choice([None, "L1", "L2"]),
                "purchaseUnit": rng.choice([None] + [u for u in UNITS_OF_KIND[kind] if u and u not in MEANINGS])}

    def customer(self, number):
        rng = self.rng
        return {"number": number, "list": rng.choice([None, "A", "B"]), "gross": rng.choice([0, 0, 1]),
                "tax": rng.choice(["IN", "IN", "IN", "IN", "EU", "DR"]), "discount": rng.choice([None, 0, 4, 2.5])}

    def row(self, article):
        """What sales and purchase prices have in common."""
        rng = self.rng
        unit = rng.choice([u for u in UNITS_OF_KIND[article["kind"]] if u not in MEANINGS])
        stages = [(rng.choice([None, "P", "P", "B"]), rng.choice([None, 2, 5, 12.5, 3.75])) if rng.random() < .5
                  else (None, None) for _ in range(3)]
        return {"article": article["number"], "unit": unit, "step": rng.choice([None, 0, 1, 1, 2, 12, 24, 40, 480, 0.5]),
                "from": rng.choice(VALID_FROM[:7] if rng.random() < .8 else VALID_FROM),
                # No two alike, so that it is always told which row counts.
                "price": f"{rng.randrange(1, 4000000) / 10000:.4f}" if rng.random() < .5
                         else f"{rng.randrange(1, 40000) / 100:.2f}",
                "calculated": rng.choice([None, "1.5", "0.3333"]),
                "priceUnit": rng.choice([None, 1, 1, 1, 10, 100, 1000] if rng.random() < .98 else [0]),
                "kind": rng.choice([None, "A", "S"]), "stages": stages}

    def sales_rows(self, article):
        for _ in range(self.rng.choice([0, 3, 6, 12, 12])):
            owner = self.rng.random()
            yield dict(self.row(article), customer=self.rng.choice(self.customers)["number"] if owner < .35 else "",
                       list=self.rng.choice("AB") if .2 < owner < .65 else "")

    def purchase_rows(self, article):
        for _ in range(self.rng.choice([0, 2, 5])):
            row = self.row(article)
            row["stages"] = [(None, value) for _, value in row["stages"]]
            if self.rng.random() < .2:
                row["priceUnit"] = 0
            yield dict(row, supplier=self.rng.choice(["L1", "L2"]))

    def order(self, i):
        rng = self.rng
        positions = []
        for number in range(1, rng.choice([1, 2, 3, 5]) + 1):
            article = rng.choice(list(self.articles.values()))
            position = {"Positionsnummer": number, "Artikelnummer": article["number"],
                        "Menge": rng.choice([1, 2, 3, 12, 24, 30, 480, 960, 1000, 25000, 0.5, 2.75, -1, -36, 0])}
            unit = rng.choice(UNITS_OF_KIND[article["kind"]])
            if unit:
                position["Mengeneinheit"] = unit
            if rng.random() < .4:
                position["Preis"] = rng.randrange(1, 20000) / 100
            if rng.random() < .2:
                position["Rabatt"] = rng.choice([3, 7.5])
            if rng.random() < .2:
                position["Preiseinheit"] = rng.choice([1, 10])
            positions.append(position)
        return {"id": f"ORDER-{i:04}", "customer": rng.choice(self.customers), "positions": positions,
                "day": FIRST_DAY + datetime.timedelta(rng.randrange(24))}

    def jobs(self):
        return [{"type": "Auftrag", "JobID": order["id"], "Kundennummer": order["customer"]["number"], "Bez1": "Muster",
                 "Eingangsdatum": order["day"].strftime("%d.%m.%Y"), "Positionen": order["positions"]}
                for order in self.orders]

    def fill(self, database):
        def insert(table, columns, rows):
            names = columns.split()
            database.executemany(f"Insert Or Replace Into {table} ({', '.join(names)}) "
                                 f"Values ({', '.join('?' * len(names))})", rows)

        def staged(row, columns):
            return [value for mark, value in row["stages"] for value in ((mark, value) if columns == 2 else (value,))]

        insert("Steuerschlüssel", "Steuerschlüssel MwSt_Satz", RATES.items())
        insert("Steuerschlüsselzuordnung", "MwStKZKunde MwStKZArtikel Steuerschlüssel SteuerschlüsselNeu",
               [marks + keys for marks, keys in TAX_KEYS.items()])
        insert("Umrechnungen", "Artikelnummer Mengeneinheit Basiseinheit Faktor", CONVERSIONS)
        insert("MengeneinheitenAltern", "Alternativ Mengeneinheit", MEANINGS.items())
        insert("Kundenstamm", "Kundennummer Suchbegriff Bez1 Preisliste Preistyp MwSt_KZ Auftragsrabatt",
               [(c["number"], "MUSTER", "Muster", c["list"], c["gross"], c["tax"], c["discount"])
                for c in self.customers])
        insert("Artikelstamm",
               "Artikelnummer Bez Mengeneinheit MwSt_KZ WertJN Rabattfähig Gewicht Hauptlieferant MEEinkauf",
               [(a["number"], "Artikel", a["unit"], a["tax"], a["hasAmount"], a["discountable"], a["weight"],
                 a["supplier"], a["purchaseUnit"]) for a in self.articles.values()])
        insert("Verkaufspreise", "Preisliste Kundennummer Artikelnummer Mengeneinheit Menge GueltigAb Preis KalkPreis "
               "Preiseinheit KZRabattart KZRabatt1 Rabatt1 KZRabatt2 Rabatt2 KZRabatt3 Rabatt3",
               [[r["list"], r["customer"], r["article"], r["unit"], r["step"], r["from"], r["price"], r["calculated"],
                 r["priceUnit"], r["kind"]] + staged(r, 2) for r in self.prices])
        insert("Einkaufspreise", "Lieferantennummer Artikelnummer Mengeneinheit Menge GueltigAb EKPreis "
               "EKPreiseinheit EKRabattart EKRabatt1 EKRabatt2 EKRabatt3",
               [[r["supplier"], r["article"], r["unit"], r["step"], r["from"], r["price"], r["priceUnit"],
                 r["kind"]] + staged(r, 1) for r in self.purchases])


def differences(expected, row):
    for column, wanted in expected.items():
        found = row[column]
        if isinstance(wanted, Fraction):
            # Stored as double or with four decimals: nothing that a rule could have brought about is smaller.
            same = found is not None and abs(exact(found) - wanted) <= max(abs(wanted), 1) / 10**12
            wanted = float(wanted)
        else:
            same = (found or None) == (wanted or None)
        if not same:
            yield f"{column} is {found!r} instead of {wanted!r}"


def compare(database, model, orders):
    database.row_factory = sqlite3.Row
    wrong, failed, lines = [], 0, 0
    for order in orders:
        job = database.execute("Select JobType, Bemerkung, Fehlertext From ImportKopf Where JobID = ?",
                               (order["id"],)).fetchone()
        try:
            expected, totals = model.order(order)
        except OrderFails as reason:
            failed += 1
            if job["JobType"] != 32:
                wrong.append(f"{order['id']}: written although {reason}")
            continue
        if job["JobType"] != 33:
            wrong.append(f"{order['id']}: not written: {job['Fehlertext']}")
            continue
        number = int(job["Bemerkung"].rsplit(" ", 1)[1])
        header = database.execute("Select * From Auftragskopf Where Auftragsnummer = ?", (number,)).fetchone()
        rows = database.execute("Select * From Auftragspos Where Auftragsnummer = ?", (number,)).fetchall()
        if sorted(row["Positionsnummer"] for row in rows) != sorted(expected):
            wrong.append(f"{order['id']}: other lines than staged")
            continue
        for row in rows:
            lines += 1
            position = row["Positionsnummer"]
            wrong += [f"{order['id']} line {position}: {text}" for text in differences(expected[position], row)]
        wrong += [f"{order['id']}: {text}" for text in differences(totals, header)]
    return wrong, failed, lines


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("program")
    parser.add_argument("--orders", type=int, default=500)
    parser.add_argument("--seed", type=int, default=20261124)
    options = parser.parse_args()
    print(f"{options.orders} orders, seed {options.seed}", flush=True)
    samples = Samples(random.Random(options.seed), options.orders)
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "erp.db")
        environment = dict(os.environ, HOME=folder, XDG_CONFIG_HOME=folder, XDG_DATA_HOME=folder)

        def run(*arguments, accepted=(0,)):
            done = subprocess.run([options.program, "--db", path, *arguments], env=environment, text=True,
                                  capture_output=True)
            if done.returncode not in accepted:
                sys.exit(f"{' '.join(arguments)} ended with {done.returncode}:\n{done.stdout}{done.stderr}")

        run("init")
        run("settings", "set", "Allgemein", "DatumMwStÄnderung", RATE_CHANGE.strftime("%d.%m.%Y"))
        with sqlite3.connect(path) as database:
            samples.fill(database)
        database.close()
        jobs = os.path.join(folder, "jobs.json")
        with open(jobs, "w", encoding="utf-8") as file:
            json.dump(samples.jobs(), file, ensure_ascii=False)
        run("stage", jobs)
        run("--date", "24.11.2026", "process", accepted=(0, 1))
        model = Model(samples)
        database = sqlite3.connect(path)
        wrong, failed, lines = compare(database, model, samples.orders)
        database.close()
    print(f"{lines} lines written, {failed} orders refused as expected; prices converted {model.converted} times, "
          f"{model.scaled} by the price unit, {model.left_out} rows with an unreadable date, {model.ties} ties")
    if not (lines and failed and model.converted and model.scaled and model.left_out and model.ties):
        wrong.append("a rule was never met")
    for text in wrong[:40]:
        print(text)
    print(f"{len(wrong)} differences")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
