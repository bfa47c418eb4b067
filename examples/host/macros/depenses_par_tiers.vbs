'types: achats=Ecritures,achat=Ecriture,totaux=Dictionary
' Dépenses par tiers : additionne les débits de l'année et les écrit dans un fichier.
Option Explicit

Dim achats, achat, totaux, i, tiers, fichiers, sortie

Set totaux = CreateObject("Scripting.Dictionary")
totaux.CompareMode = vbTextCompare

Set achats = CompteCourant.Ecritures.Filtrer(zefFiltreDebits, DateSerial(Year(Date), 1, 1), Date)
achats.Trier zefTriTiers, zefCroissant
For i = 1 To achats.Nombre
    Set achat = achats.Item(i)
    tiers = Trim(achat.Tiers.Nom)
    If totaux.Exists(tiers) Then
        totaux.Item(tiers) = totaux.Item(tiers) + achat.Montant
    Else
        totaux.Add tiers, achat.Montant
    End If
Next

Set fichiers = CreateObject("Scripting.FileSystemObject")
Set sortie = fichiers.CreateTextFile(Replace(Dossier.Chemin, ".zef", ".csv"), True)
For Each tiers In totaux.Keys
    sortie.WriteLine tiers & ";" & FormatNumber(-totaux.Item(tiers), 2)
Next
sortie.Close
ZEF.Journal totaux.Count & " tiers écrits", zefJournalInfo
