' Listeners that raise, leave and end the last hold on their object.
Option Explicit
Dim engine, other, kunde, calls
Set kunde = Host.Create("QXImportJob.Kunde")
kunde.JobID = "EVENTS1"
kunde.Kundennummer = "47120"
kunde.Bez1 = "Zuhörer"
kunde.AddItem
Set kunde = Nothing

Set engine = Host.Create("QXImportJob.ImportJobObject2")
Set other = Host.Create("QXImportJob.ImportJobObject2")
Host.Connect engine, "Raising_"
Host.Connect engine, "Second_"
Host.Connect other, "Other_"
calls = 0
Host.Echo engine.ProcessJobs(True, 1)
Host.Disconnect engine
engine.Unload
other.Unload
Host.Echo calls > 0
Set other = Nothing

Sub Raising_ProcessInfo(info)
  Host.Raise 5
End Sub

Sub Second_ProcessInfo(info)
  If InStr(info, "47120") > 0 Then calls = calls + 1
End Sub

Sub Second_ProcessProgress(percent)
  If engine Is Nothing Then Exit Sub
  ' Another run would nest.
  If percent = 100 Then Host.Echo "nested: " & engine.ProcessJobs(True, 1)
End Sub

Sub Other_JobViewUnload()
  Host.Echo "other unloaded"
End Sub
