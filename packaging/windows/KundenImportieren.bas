Attribute VB_Name = "KundenImportieren"
Option Explicit

' Legt für jede Zeile des aktiven Blatts einen Importvorgang an und verarbeitet die Kunden. Ab Zeile 2:
'   A Kundennummer, B Name, C Straße, D Land, E Postleitzahl, F Ort.
' In Spalte G steht danach, ob es den Kunden gibt.
Public Sub KundenImportieren()
  Dim blatt As Object, engine As Object, kunde As Object
  Dim zeile As Long, letzte As Long, nummer As String
  Set blatt = ActiveSheet
  Set engine = CreateObject("QXImportJob.ImportJobObject2")

  zeile = 2
  Do Until IsEmpty(blatt.Cells(zeile, 1).Value)
    Set kunde = CreateObject("QXImportJob.Kunde")
    kunde.Kundennummer = blatt.Cells(zeile, 1).Value
    kunde.Bez1 = blatt.Cells(zeile, 2).Value
    kunde.Strasse = blatt.Cells(zeile, 3).Value
    kunde.Land = blatt.Cells(zeile, 4).Value
    kunde.PLZ = blatt.Cells(zeile, 5).Value
    kunde.Ort = blatt.Cells(zeile, 6).Value
    kunde.AddItem
    zeile = zeile + 1
  Loop
  letzte = zeile - 1

  ' Das zweite Argument: 1 heißt nur Kunden.
  engine.ProcessJobs False, 1

  For zeile = 2 To letzte
    nummer = blatt.Cells(zeile, 1).Value
    If engine.KundeAngelegt(nummer) Then
      blatt.Cells(zeile, 7).Value = "angelegt"
    Else
      blatt.Cells(zeile, 7).Value = "nicht angelegt, siehe Importvorgänge"
    End If
  Next
  engine.Unload
End Sub
