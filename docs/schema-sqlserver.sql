-- The tables of the component on SQL Server, as "qximportjob init" creates them there.
-- Printed from the program's own description; scripts/pages.sh --renew brings it up to date.
CREATE TABLE [ImportKopf] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [JobID] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [JobType] SMALLINT,
  [ImportType] SMALLINT,
  [Status] SMALLINT,
  [Eingangsdatum] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Kundennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [AdresseAendernJN] BIT,
  [ZahlungsartAendernJN] BIT,
  [Suchbegriff] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Bez1] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Bez2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Bez3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Strasse] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Land] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [PLZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Ort] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Telefon] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Telefax] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [EMail] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Kundengruppe] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Vertreter1] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Vertreter2] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Vertreter3] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Zahlungsart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Konto] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [BLZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Kreditinstitut] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Bemerkung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [NeukundeJN] BIT,
  [Vertragsnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Vertragsdatum] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Vertragsbeginn] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Vertragsende] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Zahlungsweise] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Währung] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [WährungEingabe] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Fehlertext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Betreff] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Versandart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [ZahlungsbedSchl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Provisionsgruppe] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [UstIdentNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VS_KdNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VS_AdrNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [RG_KdNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [RG_AdrNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Hauptkonto] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VS_Bez1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [VS_Bez2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [VS_Bez3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [VS_Straße] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [VS_Land] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VS_PLZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VS_Ort] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [RG_Bez1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [RG_Bez2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [RG_Bez3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [RG_Straße] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [RG_Land] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [RG_PLZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [RG_Ort] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Preisliste] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Preistyp] SMALLINT,
  [IndFild1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [IndFild2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [IndFild3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [IndFild4] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KundeSeit] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KundeVerlorenAm] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [GrundVerloren] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [GrundVerlorenSchl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Artikelnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Vertragsart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Zustand] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Vertragstext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Intervall] SMALLINT,
  [Menge] FLOAT,
  [Preis] FLOAT,
  [GekuendigtAm] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Liefertermin] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KostID] BIGINT,
  [ProcessWarning] SMALLINT,
  [KontoNummer] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Bankleitzahl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KundengruppenShop] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [AendStatShop] SMALLINT,
  [Info] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Kündigungsgrund] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [PreisabweichungGrund] SMALLINT,
  [PreisabweichungGenehmigender] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [PreisabweichungDatum] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [PreisabweichungBemerkung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Fehler] BIT,
  [Erledigt] BIT,
  [Neukunde] BIT,
  PRIMARY KEY ([JobID])
);
CREATE INDEX [ImportKopf_Art] ON [ImportKopf] ([JobType]);
CREATE INDEX [ImportKopf_Kunde] ON [ImportKopf] ([JobType], [Kundennummer]);
CREATE INDEX [ImportKopf_Datum] ON [ImportKopf] ([JobType]) INCLUDE ([Eingangsdatum]);
CREATE INDEX [ImportKopf_Name] ON [ImportKopf] ([JobType], [Bez1]);
CREATE INDEX [ImportKopf_Betreff] ON [ImportKopf] ([JobType], [Betreff]);
CREATE INDEX [ImportKopf_Freigabe] ON [ImportKopf] ([ProcessWarning]) WHERE [ProcessWarning] = 1;
CREATE TABLE [ImportPos] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [JobID] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [ChildID] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [JobType] SMALLINT,
  [Positionsnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Vertragsart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Artikelnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Menge] FLOAT,
  [Preis] FLOAT,
  [Artikellangtext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Auslieferungsmenge] FLOAT,
  [Fakturiermenge] FLOAT,
  [Lieferbereit] BIT,
  [Fakturierbereit] BIT,
  [Mengeneinheit] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Liefertermin] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KostID] BIGINT,
  [Rabatt] FLOAT,
  [Preiseinheit] FLOAT,
  [Vertragsende] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Vertragstext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([ChildID])
);
CREATE INDEX [ImportPos_Job] ON [ImportPos] ([JobID]);
CREATE TABLE [LockControl] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Dateiname] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Satz] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [StationID] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [SessionID] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Benutzer] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Dateiname], [Satz])
);
CREATE TABLE [Kundenstamm] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Kundennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [ÄndUser] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [ÄndDatum] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Suchbegriff] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Bez1] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Bez2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Bez3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Strasse] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Land] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [PLZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Ort] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Telefon] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Telefax] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [EMail] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Versandart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Kundengruppe] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VertreterNr1] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VertreterNr2] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VertreterNr3] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [AnteilVertreter1] FLOAT,
  [AnteilVertreter2] FLOAT,
  [AnteilVertreter3] FLOAT,
  [Zahlungsart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [ZahlungsbedSchl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Konto] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KontoNummer] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Bankleitzahl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Kreditinstitut] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KundengruppenShop] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [AendStatShop] SMALLINT,
  [VS_KdNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VS_AdrNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [RG_KdNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [RG_AdrNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Hauptkonto] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Preisliste] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Preistyp] SMALLINT DEFAULT 0,
  [KundeSeit] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KundeVerlorenAm] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [GrundVerloren] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [GrundVerlorenSchl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [UstIdentNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Provisionsgruppe] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Klassifizierung] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Auftragsrabatt] FLOAT,
  [FremdLiefNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KostID] BIGINT,
  [Valutabehandlung] SMALLINT,
  [Valutatage] SMALLINT,
  [MwSt_KZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC DEFAULT 'IN',
  [Ind_Text1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text4] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Zahl1] FLOAT,
  [Ind_Zahl2] FLOAT,
  [Ind_Zahl3] FLOAT,
  [Ind_Zahl4] FLOAT,
  [Ind_Memo1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Memo2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [SprachKZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [AnzAN] SMALLINT,
  [AnzAB] SMALLINT,
  [AnzLS] SMALLINT,
  [AnzVE] SMALLINT,
  [AnzRG] SMALLINT,
  [AnzGS] SMALLINT,
  [KopftextAN] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KopftextAB] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KopftextLS] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KopftextRG] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KopftextGS] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KZDivers] BIT,
  [Liefersperre] BIT,
  [Kreditlimit1] DECIMAL(19,4),
  [Kreditlimit2] DECIMAL(19,4),
  [Währung] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  PRIMARY KEY ([Kundennummer])
);
CREATE INDEX [Kundenstamm_Suchbegriff] ON [Kundenstamm] ([Suchbegriff], [Kundennummer]);
CREATE INDEX [Kundenstamm_Name] ON [Kundenstamm] ([Bez1], [Kundennummer]);
CREATE TABLE [Adressenstamm] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Kundennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Adressnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Bez1] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Bez2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Bez3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Strasse] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Land] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [PLZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Ort] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Telefon] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Telefax] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [EMail] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2
);
CREATE UNIQUE INDEX [Adressenstamm_Adresse] ON [Adressenstamm] ([Kundennummer], [Adressnummer]) WHERE [Kundennummer] IS NOT NULL AND [Adressnummer] IS NOT NULL;
CREATE TABLE [Kundengruppen] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Kundengruppe] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Langtext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Kundengruppe])
);
CREATE TABLE [Vertreter] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [VertreterNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Suchbegriff] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Bez1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Bez2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ort] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [AnteilVertreter] FLOAT,
  PRIMARY KEY ([VertreterNr])
);
CREATE TABLE [Zahlungsarten] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Zahlungsart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Kurztext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Zahlungsart])
);
CREATE TABLE [Kreditinstitute] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Bankleitzahl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Kreditinstitut] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  PRIMARY KEY ([Bankleitzahl])
);
CREATE TABLE [Währungen] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Währung] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Langtext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Wechselkurs] FLOAT,
  [Kursbehandlung] SMALLINT,
  PRIMARY KEY ([Währung])
);
CREATE TABLE [Versandtexte] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Versandart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Kurztext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Versandart])
);
CREATE TABLE [Zahlungsbedingungen] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [ZahlbedSchl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [SkontoTage1] SMALLINT,
  [SkontoTage2] SMALLINT,
  [SkontoTage3] SMALLINT,
  [SkontoProzent1] FLOAT,
  [SkontoProzent2] FLOAT,
  [SkontoProzent3] FLOAT,
  [NettoTage] SMALLINT,
  PRIMARY KEY ([ZahlbedSchl])
);
CREATE TABLE [PreislistenKopf] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Preisliste] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Langtext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Preisliste])
);
CREATE TABLE [Verträge] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Kundennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Vertragsnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Vertragsdatum] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Vertragsbeginn] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Vertragsende] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Zahlungsweise] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Intervall] SMALLINT,
  [IntervallErstmals] SMALLINT,
  [IntervallVerlängerung] SMALLINT,
  [Bemerkung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Kündigungsgrund] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Zustand] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [ÄndUser] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [ÄndDatum] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Vertragsart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [VertrGegenstandsNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Anzahl] FLOAT,
  [Betrag] DECIMAL(19,4),
  [PreisabweichungGrund] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [PreisabweichungGenehmigender] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [PreisabweichungDatum] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [PreisabweichungBemerkung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [VS_KdNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [GekuendigtAm] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [GrundVerlorenSchl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Vertragstext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Kundennummer], [Vertragsnummer], [Vertragsart], [VertrGegenstandsNr])
);
CREATE TABLE [Vertragsarten] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Vertragsart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Kurztext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Vertragsart])
);
CREATE TABLE [VertragsGegenständePos] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [VertrGegenstandsNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Vertragsart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  PRIMARY KEY ([VertrGegenstandsNr], [Vertragsart])
);
CREATE TABLE [Vertragsgegenstände] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [VertrGegenstandsNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Bez] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  PRIMARY KEY ([VertrGegenstandsNr])
);
CREATE TABLE [Textbausteine] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Textart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [TextNummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [ZusatztextNummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [SprachKZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Kurztext] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Langtext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [WoDrucken] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Schriftart] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Schriftgröße] SMALLINT,
  [Schriftstil] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Textart], [TextNummer], [ZusatztextNummer], [SprachKZ])
);
CREATE TABLE [Personalstamm] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [PersonalNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Kurzzeichen] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Anrede] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Titel] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Vorname] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Nachname] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([PersonalNr])
);
CREATE TABLE [Auftragskopf] (
  [Auftragsnummer] BIGINT NOT NULL,
  [Buchungskreis] SMALLINT,
  [Kundennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Suchbegriff] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Bez1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KZDivers] BIT,
  [KundeDivers] BIT,
  [Klassifizierung] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Auftragsrabatt] FLOAT,
  [Preisliste] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Preistyp] SMALLINT,
  [FremdLiefNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KostID] BIGINT,
  [Valutabehandlung] SMALLINT,
  [Valutatage] SMALLINT,
  [MwSt_KZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Ind_Text1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text4] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Zahl1] FLOAT,
  [Ind_Zahl2] FLOAT,
  [Ind_Zahl3] FLOAT,
  [Ind_Zahl4] FLOAT,
  [Ind_Memo1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Memo2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [SprachKZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [AnzAN] SMALLINT,
  [AnzAB] SMALLINT,
  [AnzLS] SMALLINT,
  [AnzVE] SMALLINT,
  [AnzRG] SMALLINT,
  [AnzGS] SMALLINT,
  [KopftextAN] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KopftextAB] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KopftextLS] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KopftextRG] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KopftextGS] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [VS_KdNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VS_AdrNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VS_Bez1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [VS_Bez2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [VS_Bez3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [VS_Strasse] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [VS_Land] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VS_PLZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VS_Ort] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [RG_KdNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [RG_AdrNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [RG_Bez1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [RG_Bez2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [RG_Bez3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [RG_Strasse] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [RG_Land] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [RG_PLZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [RG_Ort] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Telefon] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Telefax] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Hauptkonto] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Versandart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Zahlungsart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [ZahlungsbedSchl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VertreterNr1] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VertreterNr2] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [VertreterNr3] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [AnteilVertreter1] FLOAT,
  [AnteilVertreter2] FLOAT,
  [AnteilVertreter3] FLOAT,
  [Provisionsgruppe] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [UstIdentNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Konto] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [KontoNummer] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Bankleitzahl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Kreditinstitut] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Bemerkung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [InterneBemerkung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Währung] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Wechselkurs] FLOAT,
  [Kursbehandlung] SMALLINT,
  [Auftragsart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Auftragsdatum] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Zustand] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Import] BIT,
  [Betreff] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [IhreBestellung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [PrgVersion] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [UnsereZeichen] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Sachbearbeiter] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Gesamtnetto] DECIMAL(19,4),
  [GesamtMwSt] DECIMAL(19,4),
  [Gesamtbrutto] DECIMAL(19,4),
  [GesamtGewicht] FLOAT,
  [ÄndUser] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Auftragsnummer])
);
CREATE TABLE [Auftragspos] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Auftragsnummer] BIGINT,
  [Zeilentyp] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Zustand] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Import] BIT,
  [Positionsnummer] BIGINT,
  [Menge] FLOAT,
  [Auslieferungsmenge] FLOAT,
  [Liefermenge] FLOAT,
  [Fakturiermenge] FLOAT,
  [Artikelnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Erfassungsschema] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KZDivers] BIT,
  [ArtikelDivers] BIT,
  [Mengeneinheit] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Bezeichnung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Gewicht] FLOAT,
  [PosGewicht] FLOAT,
  [Provisionsgruppe] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Ind_Text1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text4] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Zahl1] FLOAT,
  [Ind_Zahl2] FLOAT,
  [Ind_Zahl3] FLOAT,
  [Ind_Zahl4] FLOAT,
  [Ind_Memo1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Memo2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [DurchschnittEK] DECIMAL(19,4),
  [Hauptlager] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Lagernummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Rechenfeld1] FLOAT,
  [Rechenfeld2] FLOAT,
  [Rechenfeld3] FLOAT,
  [Rechenfeld4] FLOAT,
  [Rechenfeld5] FLOAT,
  [MengeneinheitEinkauf] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [EKMengeneinheit] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Preis] DECIMAL(19,4),
  [KalkPreis] DECIMAL(19,4),
  [Preiseinheit] FLOAT,
  [Rabatt] FLOAT,
  [Preisfindung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Rabattart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KZRabattart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KZRabatt1] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KZRabatt2] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KZRabatt3] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Rabatt1] FLOAT,
  [Rabatt2] FLOAT,
  [Rabatt3] FLOAT,
  [EKPreis] DECIMAL(19,4),
  [EKPreiseinheit] FLOAT,
  [EKRabatt] FLOAT,
  [EKRabattart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [EKRabatt1] FLOAT,
  [EKRabatt2] FLOAT,
  [EKRabatt3] FLOAT,
  [Lieferbereit] BIT,
  [Fakturierbereit] BIT,
  [Liefertermin] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [MwSt_KZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [MwSt_Konto] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [MwSt_Satz] FLOAT,
  [DZMwSt] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Artikellangtext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Text] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Schriftart] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Schriftstil] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Schriftgröße] SMALLINT,
  [WoDrucken] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [WertJN] BIT,
  [Rabattfähig] BIT,
  [KostID] BIGINT,
  [ÄndUser] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2
);
CREATE INDEX [Auftragspos_Auftrag] ON [Auftragspos] ([Auftragsnummer], [Positionsnummer]);
CREATE TABLE [Belegindex] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Belegart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Belegnummer] BIGINT,
  [Herkunft] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Suchbegriff] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Kundennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Datum] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2
);
CREATE INDEX [Belegindex_Beleg] ON [Belegindex] ([Belegart], [Belegnummer]);
CREATE TABLE [Nummernkreise] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [NSchl] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Buchungskreis] SMALLINT NOT NULL,
  [Aktiviert] BIT,
  [aktuellerWert] BIGINT,
  [UntererWert] BIGINT,
  [ObererWert] BIGINT,
  PRIMARY KEY ([NSchl], [Buchungskreis])
);
CREATE TABLE [Artikelstamm] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Artikelnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Bez] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Bezeichnung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Mengeneinheit] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [MwSt_KZ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Erfassungsschema] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [ArtikelGesperrt] BIT,
  [KZDivers] BIT,
  [Gewicht] FLOAT,
  [Provisionsgruppe] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Ind_Text1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Text4] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Zahl1] FLOAT,
  [Ind_Zahl2] FLOAT,
  [Ind_Zahl3] FLOAT,
  [Ind_Zahl4] FLOAT,
  [Ind_Memo1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ind_Memo2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [DurchschnittEK] DECIMAL(19,4),
  [Hauptlager] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Rechenfeld1] FLOAT,
  [Rechenfeld2] FLOAT,
  [Rechenfeld3] FLOAT,
  [Rechenfeld4] FLOAT,
  [Rechenfeld5] FLOAT,
  [MengeneinheitEinkauf] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [MEEinkauf] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Hauptlieferant] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Einkaufsgruppe] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [PreisfindungEinkauf] SMALLINT,
  [WertJN] BIT,
  [Rabattfähig] BIT,
  [Preis] DECIMAL(19,4),
  [KalkPreis] DECIMAL(19,4),
  [Artikellangtext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [DZMwSt] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Artikelnummer])
);
CREATE INDEX [Artikelstamm_Bezeichnung] ON [Artikelstamm] ([Bez], [Artikelnummer]);
CREATE TABLE [Artikellager] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Artikelnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Lagernummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Lagerbestand] FLOAT,
  [MitBestand] BIT,
  PRIMARY KEY ([Artikelnummer], [Lagernummer])
);
CREATE TABLE [MengeneinheitenAltern] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Alternativ] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Mengeneinheit] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  PRIMARY KEY ([Alternativ])
);
CREATE TABLE [Mengeneinheiten] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Mengeneinheit] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Langtext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [AnzNK] SMALLINT,
  PRIMARY KEY ([Mengeneinheit])
);
CREATE TABLE [Kostenzuordnung] (
  [KostID] BIGINT NOT NULL,
  [Kostenstelle] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Kostentraeger] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  PRIMARY KEY ([KostID])
);
CREATE INDEX [Kostenzuordnung_Paar] ON [Kostenzuordnung] ([Kostenstelle], [Kostentraeger]);
CREATE TABLE [Steuerschlüsselzuordnung] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [MwStKZKunde] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [MwStKZArtikel] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Steuerschlüssel] SMALLINT,
  [SteuerschlüsselNeu] SMALLINT,
  PRIMARY KEY ([MwStKZKunde], [MwStKZArtikel])
);
CREATE TABLE [Steuerschlüssel] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Steuerschlüssel] SMALLINT NOT NULL,
  [MwSt_Satz] FLOAT,
  PRIMARY KEY ([Steuerschlüssel])
);
CREATE TABLE [Protokolle] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [ID] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Titel] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Art] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Liste] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Datum] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([ID])
);
CREATE TABLE [Protokollpositionen] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [ID] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Zeile] BIGINT NOT NULL,
  [Text0] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Text1] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Text2] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Text3] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Text4] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Text5] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Text6] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Text7] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Text8] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Memo0] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([ID], [Zeile])
);
CREATE TABLE [Verkaufspreise] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Preisliste] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC DEFAULT '',
  [Kundennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC DEFAULT '',
  [Artikelnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Mengeneinheit] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Menge] FLOAT,
  [GueltigAb] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Preis] DECIMAL(19,4),
  [KalkPreis] DECIMAL(19,4),
  [Preiseinheit] FLOAT,
  [KZRabattart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KZRabatt1] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KZRabatt2] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [KZRabatt3] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Rabatt1] FLOAT,
  [Rabatt2] FLOAT,
  [Rabatt3] FLOAT
);
CREATE INDEX [Verkaufspreise_Artikel] ON [Verkaufspreise] ([Artikelnummer]);
CREATE TABLE [OffenePosten] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Kundennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Belegnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Betrag] DECIMAL(19,4),
  [Währung] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC
);
CREATE INDEX [OffenePosten_Kunde] ON [OffenePosten] ([Kundennummer]);
CREATE TABLE [Umrechnungen] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Artikelnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC DEFAULT '' NOT NULL,
  [Mengeneinheit] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Basiseinheit] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Faktor] FLOAT,
  PRIMARY KEY ([Artikelnummer], [Mengeneinheit], [Basiseinheit])
);
CREATE TABLE [Einstellungen] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Section] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Key] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Value] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Section], [Key])
);
CREATE TABLE [Benutzer] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [UserName] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [PersonalNr] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Buchungskreis] SMALLINT DEFAULT 1,
  PRIMARY KEY ([UserName])
);
CREATE TABLE [Adressindex] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Kundennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Art] SMALLINT NOT NULL,
  [Suchtext] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  PRIMARY KEY ([Kundennummer], [Art])
);
CREATE TABLE [Lieferanten] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Lieferantennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Bez1] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  PRIMARY KEY ([Lieferantennummer])
);
CREATE TABLE [Einkaufspreise] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Lieferantennummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Artikelnummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Mengeneinheit] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Menge] FLOAT,
  [GueltigAb] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [EKPreis] DECIMAL(19,4),
  [EKPreiseinheit] FLOAT,
  [EKRabattart] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [EKRabatt1] FLOAT,
  [EKRabatt2] FLOAT,
  [EKRabatt3] FLOAT
);
CREATE INDEX [Einkaufspreise_Artikel] ON [Einkaufspreise] ([Artikelnummer], [Lieferantennummer]);
CREATE TABLE [Schemastand] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Version] BIGINT
);
CREATE TABLE [Importlaeufe] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [LaufID] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Beginn] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ende] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Ausgang] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Verarbeitet] BIGINT,
  [Erledigt] BIGINT,
  [Warnungen] BIGINT,
  [Fehler] BIGINT,
  [Wartend] BIGINT,
  [Benutzer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Programm] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Protokoll] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  PRIMARY KEY ([LaufID])
);
CREATE INDEX [Importlaeufe_Beginn] ON [Importlaeufe] ([Beginn]);
CREATE TABLE [Eingangsdateien] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Kennung] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Ordner] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Dateiname] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Zeitpunkt] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Kennung])
);
CREATE TABLE [Vorgangsinhalte] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [JobID] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Kennung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Zeitpunkt] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([JobID])
);
CREATE INDEX [Vorgangsinhalte_Kennung] ON [Vorgangsinhalte] ([Kennung]);
CREATE TABLE [Zustandswechsel] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Folge] BIGINT,
  [JobID] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [JobType] SMALLINT,
  [Nummer] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC,
  [Fehlertext] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  [Zeitpunkt] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2
);
CREATE UNIQUE INDEX [Zustandswechsel_Folge] ON [Zustandswechsel] ([Folge]) WHERE [Folge] IS NOT NULL;
CREATE INDEX [Zustandswechsel_Job] ON [Zustandswechsel] ([JobID], [Folge]);
CREATE TABLE [Zaehlerstaende] (
  lfd BIGINT IDENTITY UNIQUE CLUSTERED,
  [Zaehler] NVARCHAR(400) COLLATE Latin1_General_100_CI_AS_SC NOT NULL,
  [Stand] BIGINT,
  [Kennung] NVARCHAR(MAX) COLLATE Latin1_General_100_BIN2,
  PRIMARY KEY ([Zaehler])
);
INSERT INTO [Schemastand] ([Version]) VALUES (6);
