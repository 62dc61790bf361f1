' Stages a customer and an order, processes them with events and reads the results.
Option Explicit
Dim engine, kunde, auftrag, position, unEvaluated, state, part, job

Set engine = CreateObject("QXImportJob.ImportJobObject2")
Host.Connect engine, "Engine_"

Set kunde = CreateObject("QXImportJob.Kunde")
kunde.JobID = "SCRIPT1"
kunde.Kundennummer = 47110
kunde.Bez1 = "Bäckerei Süß"
kunde.Strasse = "Am Markt 3"
kunde.Land = "DE"
kunde.PLZ = "24103"
kunde.Ort = "Kiel"
kunde.AddItem

Set auftrag = CreateObject("QXImportJob.Auftrag")
auftrag.Kundennummer = "47110"
auftrag.Bez1 = "Bäckerei Süß"
auftrag.AddItem
' Positions belong to the order that was created last.
For Each part In Array("SKS-001", "SKS-002")
  Set position = CreateObject("QXImportJob.AuftragsPos")
  position.Positionsnummer = Right(part, 1)
  position.Artikelnummer = part
  position.Menge = 2
  position.AddItem
Next

' Both arguments are by reference and may be left out.
unEvaluated = True
state = 1
Host.Echo "run: " & engine.ProcessJobs(unEvaluated, state)
state = 4
Host.Echo "run: " & engine.ProcessJobs(, state)
Host.Echo "known: " & engine.KundeAngelegt("47110")

' Answers come back through arguments.
Dim bez1, bez2, bez3, strasse, land, plz, ort
If engine.GetAdressDaten("47110", "", bez1, bez2, bez3, strasse, land, plz, ort) Then
  Host.Echo bez1 & ", " & strasse & ", " & land & "-" & plz & " " & ort
End If

' The state of the order: done jobs end in 3.
Set job = CreateObject("QXImportJob.ImportJobObject")
job.ActiveConnection = Host.Argument(0)
If job.ConnectDB And job.LoadFromDatabase Then
  Host.Echo "order: " & job.GetItem(auftrag.JobID).JobType & " " & job.GetItem(auftrag.JobID).Fehlertext
End If

engine.Unload

Sub Engine_ProcessInfo(info)
  If Right(info, 3) = "..." Then Host.Echo info
End Sub

Sub Engine_ProcessProgress(percent)
  If percent = 100 Then Host.Echo percent & " %"
End Sub

Sub Engine_JobViewUnload()
  Host.Echo "unloaded"
End Sub
