#!/bin/sh
# Makes a file of jobs of one order in XML: sh xml-order.sh ubl|opentrans FILE|- [OPTION OF XSLTPROC]... > order.json
# Prints all of it or nothing. A file of more than 100 MB is refused, since it takes ten times its size in memory;
# $ORDER_XML_MB sets another limit.
set -eu

refuse() {
  echo "xml-order.sh: $1" >&2
  echo "Nothing was converted." >&2
  exit 2
}

[ $# -ge 2 ] || refuse "usage: sh xml-order.sh ubl|opentrans FILE|- [OPTION OF XSLTPROC]..."
stylesheet=$(dirname -- "$0")/$1-order.xsl
[ -f "$stylesheet" ] || refuse "'$1' is not ubl or opentrans"
case $2 in
- | /*) file=$2 ;;
*) file=./$2 ;;
esac
name=$2
shift 2
limit=${ORDER_XML_MB:-100}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
# A byte more than allowed tells that there are more.
if [ "$file" = - ]; then
  name="standard input"
  file=$folder/order.xml
  head -c $((limit * 1000000 + 1)) >"$file"
elif [ ! -f "$file" ] || [ ! -r "$file" ]; then
  refuse "$name: the file cannot be read"
fi
[ "$(wc -c <"$file")" -le $((limit * 1000000)) ] ||
  refuse "$name: the file is larger than $limit MB; \$ORDER_XML_MB raises the limit, and ten times as much memory is needed"

# Both tools may end with 0 without memory, having dropped what did not fit.
run() {
  output=$1
  shift
  status=0
  "$@" >"$folder/$output" 2>"$folder/messages" || status=$?
  cat "$folder/messages" >&2
  if [ $status -ne 0 ] || grep -q 'error :' "$folder/messages"; then refuse "$name: not an order that can be converted"; fi
}

# Without its document type an order cannot bring in other files, which xsltproc alone reads.
run plain.xml xmllint --nonet --dropdtd "$file"
run jobs.json xsltproc --nonet --novalid "$@" "$stylesheet" "$folder/plain.xml"
cat "$folder/jobs.json"
