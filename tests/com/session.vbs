' A session of the host's own, an object of the script.
Option Explicit

Class Sitzung
  Public Stored
  Public Property Get Connection
    Set Connection = Nothing
  End Property
  Public Property Get PersonalNr
    PersonalNr = Null
  End Property
  Public Function GetSetting(section, key, fallback, scope)
    If key = "Kaputt" Then Host.Raise 5
    GetSetting = section & "/" & key & "/" & scope & Stored
  End Function
  Public Sub SaveSetting(section, key, setting, unused, scope)
    Stored = "/" & setting
  End Sub
  Public Function GetSessionDate
    GetSessionDate = DateSerial(2026, 2, 28)
  End Function
  Public Sub Disconnect
    Host.Echo "disconnected"
  End Sub
End Class

Dim engine, session
Set engine = Host.Create("QXImportJob.ImportJobObject2")
Set session = New Sitzung
Set engine.Session = session
Host.Echo engine.Session Is session
Host.Echo engine.ImpGetSetting("QXImportJob", "Prüfung", "Größe")
engine.ImpSaveSetting "QXImportJob", "Prüfung", "Größe", "groß"
Host.Echo engine.ImpGetSetting("QXImportJob", "Prüfung", "Größe")
Host.Echo "failed: " & engine.ImpGetSetting("QXImportJob", "Prüfung", "Kaputt")
Host.Echo engine.intdat(engine.NowEx)
' Its components are those of an ERP that is not registered here.
Host.Echo engine.CreateProtocol
Set engine = Nothing
Set session = Nothing
