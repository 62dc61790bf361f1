# Orders of a shop as a file of jobs: jq -s -f shop-order.jq ORDERS.json | qximportjob stage -
#
# The input is one order, several behind each other, or an array of them, in the form of examples/convert/shop-orders.json:
# customer with addresses, lines with gross prices. Change the names on the right to those of your shop. A value
# that is missing where a job needs one ends the conversion, and then nothing is printed.

def needed($what): if . == null or . == "" or . == [] then error("\($what) is missing") else . end;
# What is not given is left out.
def given: with_entries(select(.value != null and .value != ""));
def day: .[0:10] | strptime("%Y-%m-%d") | strftime("%d.%m.%Y");
# Net of a gross price, to four decimals.
def net($percent): . / (1 + $percent / 100) * 10000 | round / 10000;
def address($prefix):
  { Bez1: (.company // ([.first_name, .last_name] | map(select(. != null)) | join(" "))),
    Strasse: .street, Land: .country, PLZ: .zip, Ort: .city }
  | with_entries(.key = $prefix + .key);

def job:
  if type == "object" then . else error("an order is expected, not \(type)") end
  | (.number | needed("number") | tostring) as $number
  | { type: "Auftrag",
      JobID: "SHOP-\($number)",
      Kundennummer: (.customer.number | needed("order \($number): customer.number") | tostring),
      Eingangsdatum: (.created_at | needed("order \($number): created_at") | day),
      Betreff: "Bestellung \($number)",
      EMail: .customer.email,
      "WährungEingabe": .currency,
      Bemerkung: .comment }
  + (if .shipping_address then .shipping_address | address("VS_") else {} end)
  | given;

def position($order):
  "order \($order), line \(.key + 1)" as $place
  | .key as $index
  | .value
  | { Positionsnummer: ($index + 1),
      Artikelnummer: (.sku | needed("\($place): sku") | tostring),
      Menge: (.quantity | needed("\($place): quantity") | tonumber),
      Preis: (if .gross_price == null then null
              else .tax_percent as $tax
                | .gross_price | tonumber | net($tax | needed("\($place): tax_percent") | tonumber)
              end),
      Artikellangtext: .note }
  | given;

# Slurped (-s), so that one document becomes of all.
[ needed("the input") | .[] | if type == "array" then .[] else . end
  | job as $job
  | .number as $order
  | $job + { Positionen: [ .lines | needed("order \($order): lines") | to_entries[] | position($order) ] } ]
