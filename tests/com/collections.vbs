' Jobs in memory: collections, For Each, cursors, files of version 1.
Option Explicit
Dim jobs, job, store, position, i, found

Set jobs = Host.Create("QXImportJob.ImportJobs")
For i = 1 To 3
  Set job = Host.Create("QXImportJob.ImportJob")
  job.JobID = "JOB" & i
  job.Währung = "EUR"
  job.JobType = 10
  Host.Echo jobs.Add(job)
Next
Host.Echo jobs.Add(job) & " " & jobs.Count
For Each job In jobs
  Host.Echo job.JobID
  jobs.Remove job.JobID
Next
Host.Echo jobs.Count

' The same object again, and one with positions.
Set job = Host.Create("QXImportJob.ImportJob")
job.JobID = "JOB9"
For i = 1 To 2
  job.NewSubItem
  Set position = job.SubItem
  Host.Echo position Is job.SubItem
  position.JobID = job.JobID
  position.ChildID = "POS" & i
  position.Positionsnummer = i
  position.Menge = CCur(1.25) * i
  job.AddSubItem
Next
job.SubItemMoveFirst
Do Until job.SubItemEof
  Host.Echo job.SubItem.ChildID & " " & job.SubItem.Menge
  job.SubItemMoveNext
Loop

Set store = Host.Create("QXImportJob.ImportJobObject")
store.ActiveConnection = Host.Argument(0)
Host.Echo store.ConnectDB
Host.Echo store.AddItem(job) & " " & store.Count & " " & store.GetItem("JOB9").SubItemCount
Host.Echo store.StoreItemToDB(job)
store.RemoveAll
Host.Echo store.LoadFromDatabase
Host.Echo store.GetItem("job9").JobID & " " & store.GetItem("JOB9").SubItemCount
found = 0
store.SubItemGetParentType "POS2", found
Host.Echo found
store.DelItem "JOB9"
Set found = Nothing
Set position = Nothing
Set job = Nothing
Set jobs = Nothing
Set store = Nothing
