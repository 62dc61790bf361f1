' What wrong calls cost.
Option Explicit
Dim kunde, engine, jobs, job
Set kunde = Host.Create("QXImportJob.Kunde")
Set engine = Host.Create("QXImportJob.ImportJobObject2")
Set jobs = Host.Create("QXImportJob.ImportJobs")
Set job = Host.Create("QXImportJob.ImportJob")

On Error Resume Next
kunde.Preistyp = "viel"
Tell "kind"
kunde.Preistyp = 70000
Tell "range"
kunde.Bez1 = Null
Tell "null"
kunde.Bez1 = "a" & Chr(0) & "b"
Tell "NUL"
kunde.Nachname = "x"
Tell "member"
kunde.FormatItemCSV = "x"
Tell "read-only"
engine.KundeAngelegt
Tell "missing"
engine.KundeAngelegt "1", "2", "3"
Tell "count"
jobs.Item "nicht da"
Tell "item"
jobs.Add kunde
Tell "class"
jobs.Add "x"
Tell "no object"
engine.intdat "kein Datum"
Tell "failed"
engine.Session = job
Tell "session"

Sub Tell(what)
  Host.Echo what & ": " & Err.Number & " " & Err.Description
  Err.Clear
End Sub
