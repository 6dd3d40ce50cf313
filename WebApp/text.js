/** Every text that the page shows, by language. `{name}` is filled in by text(). */
export const texts = {
    en: {
        "app.title": "Kestrane for Archicad",
        "app.tagline": "Model coordination for Archicad",

        "signIn.heading": "Sign in",
        "signIn.user": "User name",
        "signIn.password": "Password",
        "signIn.submit": "Sign in",
        "signIn.busy": "Signing in…",
        "signIn.incomplete": "Enter your user name and your password.",
        "signIn.hint": "Local service: demo / demo",
        "signIn.out": "Sign out",
        "signIn.as": "Signed in as {user}",

        "start.failed": "Not connected",
        "start.retry": "Try again",

        "noHost.title": "Open inside Archicad",
        "noHost.body":
            "To upload your model, open this page in the Kestrane palette. Documents can be read here as well.",
        "noHost.plans":
            "To make plan documents, open this page in the Kestrane palette. Documents can be read here as well.",
        "noHost.mapping":
            "To export with a property mapping, open this page in the Kestrane palette. Documents can be read here as well.",
        "noHost.publish":
            "To publish views and layouts as documents, open this page in the Kestrane palette.",
        "noHost.models":
            "To open models, open this page in the Kestrane palette. They are listed here as well.",
        "noHost.issues":
            "To take and open viewpoints, open this page in the Kestrane palette. Issues can be read and written here as well.",

        "places.heading": "Destination",
        "places.project": "Project",
        "places.folder": "Folder",
        "places.newProject": "New project",
        "places.newFolder": "New folder",
        "places.projectName": "Name of the new project",
        "places.folderName": "Name of the new folder",
        "places.noProject": "No project yet",
        "places.noFolder": "No folder yet",
        "places.loading": "Loading…",
        "places.unavailable": "Not available",
        "places.create": "Create",
        "places.cancel": "Cancel",
        "places.retry": "Try again",
        "places.nameless": "Enter a name.",

        "upload.heading": "Upload model",
        "upload.model": "Open in Archicad: {project}",
        "upload.noModel": "No project is open in Archicad",
        "upload.fileName": "File name",
        "upload.onlyVisible": "Only visible elements",
        "upload.onlyVisibleHelp": "What the 3D window shows now",
        "upload.useMapFile": "Apply the property mapping",
        "upload.submit": "Upload model",
        "upload.noFolder": "Choose or create a folder first.",
        "upload.running": "Exporting and uploading…",
        "upload.runningHelp": "You can go on working meanwhile.",
        "upload.stop": "Stop waiting",
        "upload.done": "Uploaded",
        "upload.notDone": "Not uploaded",
        "upload.dismiss": "Close message",
        "upload.failed":
            "The model could not be exported, or the connection broke. Check that Archicad can save the project as IFC, then upload again.",
        "upload.refused": "The service answered “{said}”. Upload again, or choose another folder.",
        "upload.unreadable":
            "The service gave no readable answer. Refresh the documents; if the model is missing, upload again.",
        "upload.expired": "Your sign-in had expired. Upload again; your settings are kept.",
        "upload.stoppedWaiting":
            "The upload is still open. If it ends, its result is shown here; otherwise upload again.",

        "fileName.empty": "Enter a file name.",
        "fileName.character": 'Leave out control characters and these: / \\ : * ? " < > |',
        "fileName.dots": "Leave out dots at the start or end, and two dots in a row.",
        "fileName.long": "Choose a shorter name.",

        "documents.heading": "Documents",
        "documents.refresh": "Refresh",
        "documents.loading": "Loading documents…",
        "documents.empty": "No documents in this folder",
        "documents.emptyHelp": "What you upload appears here.",
        "documents.noFolder": "Choose a folder to see its documents",
        "documents.version": "Version {version}",
        "documents.download": "Download {name}",
        "documents.downloading": "Downloading {name}…",
        "documents.retry": "Try again",
        "documents.by": "by {author}",

        "tabs.label": "Views",
        "tabs.documents": "Documents",
        "tabs.plans": "Plans",
        "tabs.mapping": "Mapping",
        "tabs.publish": "Publish",
        "tabs.models": "Models",
        "tabs.issues": "Issues",

        "plans.heading": "Plan document",
        "plans.intro": "Of the floor plan that is in front in Archicad.",
        "plans.format": "Format",
        "plans.help.dwg": "For CAD programs: a layer for each kind of element, in metres.",
        "plans.help.pdf": "One page at a true scale, with lines that stay sharp.",
        "plans.help.png": "A picture with sharp lines.",
        "plans.help.jpeg": "A picture for programs that do not take PNG.",
        "plans.proposed": "{name} floor plan",
        "plans.submit": "Create and upload",
        "plans.running": "Creating and uploading…",
        "plans.runningHelp": "If Archicad shows a message, close it.",
        "plans.notMade":
            "Archicad made no plan. Bring a floor plan with elements to the front (not the 3D window), wait until all shapes are read and check that the disk has space, then try again.",
        "plans.failed":
            "The plan was not stored: the service refused it, or Archicad has another file of this name. Choose another file name, then try again.",
        "plans.lost":
            "The service does not answer any more. Check that it is running and refresh the documents; if the plan is missing, create and upload it again.",
        "plans.tooOld":
            "The Kestrane add-on in this Archicad cannot make plan documents yet. Install the current one, then start Archicad again.",

        "mapping.heading": "Property mapping",
        "mapping.intro": "Which properties of Archicad go into which property sets of the IFC file.",
        "mapping.noFile": "No mapping file chosen",
        "mapping.choose": "Choose mapping file…",
        "mapping.notRead":
            "No mapping was read. If you chose a file, check that it is an XML file of 64 MB at most with the root SchemeItemList.",
        "mapping.names": "New properties",
        "mapping.noNames": "Names for properties that you add to your mapping: none is given twice.",
        "mapping.newName": "New property name…",
        "mapping.tooOld":
            "The Kestrane add-on in this Archicad cannot map properties yet. Install the current one, then start Archicad again.",

        "models.heading": "Models",
        "models.refresh": "Refresh",
        "models.loading": "Loading models…",
        "models.noProject": "Choose or create a project to see its models.",
        "models.empty": "No models in this project",
        "models.emptyHelp": "Upload one under Documents, then open it here.",
        "models.retry": "Try again",
        "models.versionOf": "Version of {name}",
        "models.mergeInto": "Merge into",
        "models.mergesOne": "{names} is merged into “{into}”.",
        "models.mergesMany": "{names} are merged into “{into}”, in this order.",
        "models.open": "Open in Archicad",
        "models.openCount": "Open in Archicad ({count})",
        "models.replaces": "Replaces the project that is open in Archicad.",
        "models.downloading": "Downloading…",
        "models.downloadingHelp": "Then Archicad opens what was downloaded. Save your work before.",
        "models.opening": "Archicad is opening…",
        "models.openingHelp": "Close the message that Archicad shows. Opening can take minutes.",
        "models.done": "Opened",
        "models.mergedOne": "{names} was merged into it.",
        "models.mergedMany": "{names} were merged into it.",
        "models.failed": "Not opened",
        "models.noFolder":
            "Archicad has no folder for downloaded models. Check that the disk has space and that you may write to your user folder, then try again.",
        "models.expired":
            "Your sign-in ended during the download. Delete what was just downloaded from {folder}, since it may be incomplete; sign in and open the models again.",
        "models.notOpened":
            "“{name}” could not be opened; Archicad has said why. If the file is damaged, delete “{file}” from {folder} and open the model again: it is then downloaded anew.",
        "models.stoppedWaiting":
            "Archicad has not reported the end of the downloads or of the opening. Check that the service is running and wait a moment, then open the models again; what is there already is not downloaded again.",

        "publish.heading": "Publisher set",
        "publish.set": "Set",
        "publish.refresh": "Refresh",
        "publish.retry": "Try again",
        "publish.loading": "Loading publisher sets…",
        "publish.noProject": "Choose or create a project to publish into it.",
        "publish.noHeaders":
            "Archicad could not list its publisher sets. Check that a project is open in Archicad, then try again.",
        "publish.noSets": "No publisher sets in this project",
        "publish.noSetsHelp": "Create one in Archicad (Document > Publish), then refresh.",
        "publish.emptySet": "This set is empty",
        "publish.emptySetHelp": "Add views or layouts to it in Archicad, then refresh.",
        "publish.tooOldTitle": "Update the add-on",
        "publish.tooOld":
            "The Kestrane add-on in this Archicad cannot publish yet. Install the current one, then start Archicad again.",
        "publish.folder": "Open or close {title}",

        "publish.items": "To publish",
        "publish.docName": "Document name",
        "publish.discipline": "Discipline",
        "publish.building": "Building",
        "publish.floor": "Floor",
        "publish.fieldOf": "{field} of {title}",
        "publish.folderOf": "Folder of {title}",
        "publish.standardFolder": "As above",
        "publish.details": "Discipline, building, floor",
        "publish.common": "Same for all",
        "publish.file": "Prepared file: {path}",
        "publish.same":
            "An earlier item has this document name. Choose another one; this item would be dropped, even from another folder.",
        "publish.maybeSame":
            "An earlier item has this document name. That works only if their files are of different kinds.",
        "publish.state.prepared": "Prepared",
        "publish.state.uploading": "Uploading…",
        "publish.state.done": "Uploaded",
        "publish.state.failed": "Failed",
        "publish.stored": "“{document}” is in “{folder}”.",
        "publish.itemNotPrepared":
            "Archicad could not publish this item. Check in its Publisher that the view or layout and the output format still exist, then prepare again.",
        "publish.itemNotUploaded":
            "Not uploaded. Check that the folder still exists and that the service is running, then press “Prepare and upload”.",
        "publish.noAnswer":
            "Not known to be uploaded. Look for it among the documents of its folder; if it is missing, upload again.",

        "publish.publish": "Prepare and upload ({count})",
        "publish.publishAgain": "Prepare and upload again ({count})",
        "publish.prepare": "Only prepare ({count})",
        "publish.upload": "Only upload ({count})",
        "publish.uploadAgain": "Upload again ({count})",
        "publish.nothing": "Tick what is to be published.",
        "publish.tooMany": "At most {most} items can be published at once. Clear some; publish them afterwards.",
        "publish.badNames": "Correct the marked document names first.",
        "publish.preparing": "Preparing… ({count})",
        "publish.preparingHelp":
            "Close the message that Archicad shows. It then publishes into files, which can take minutes.",
        "publish.uploading": "Uploading… ({count})",
        "publish.uploadingHelp": "You can go on working meanwhile.",
        "publish.prepared": "Prepared items: {count}. Upload them now.",
        "publish.uploaded": "Uploaded documents: {count}",
        "publish.failed": "Not everything worked",
        "publish.notPrepared":
            "Archicad prepared nothing. Check that the disk has space and that you may write to your temporary folder, then prepare again.",
        "publish.someNotPrepared":
            "Archicad could not publish all items; failed: {count}. What to do stands at each of them. The others are prepared and can be uploaded.",
        "publish.noneReady": "None of the items could be prepared, so nothing was uploaded. What to do stands at each of them.",
        "publish.sameNames":
            "Some documents would have the same name, so nothing was uploaded. Change the marked names, then upload.",
        "publish.nothingUploaded":
            "Archicad could not begin to upload: it did not find the prepared files, or has no space for copies. Check the disk's space, then press “Prepare and upload”.",
        "publish.someNotUploaded":
            "Items without a document: {count}. What to do stands at each of them; an upload takes only what is missing.",
        "publish.expired": "Your sign-in had expired. Sign in and upload again; what is prepared is kept.",
        "publish.stoppedWaiting":
            "Archicad has not reported the end. If it still does, the result is shown here; otherwise publish again.",
        "publish.stoppedPreparing":
            "Archicad has not reported the end. Once it has, publish again; what it prepared by then is kept.",
        "publish.anew": "Has a plan changed since?",
        "publish.anewHelp":
            "Archicad keeps what it prepared and uses it again, even if the plan has changed. To have an item prepared anew, delete its file from {folder} (its name stands under the item’s details), then prepare again.",

        "history.heading": "History",
        "history.empty": "What is uploaded from this Archicad is listed here.",
        "history.model": "Model",
        "history.plan": "Plan",
        "history.snapshot": "Snapshot",
        "history.document": "Published",

        "topics.heading": "Issues",
        "topics.new": "New issue",
        "topics.refresh": "Refresh",
        "topics.loading": "Loading issues…",
        "topics.noProject": "Choose or create a project to see its issues.",
        "topics.empty": "No issues in this project",
        "topics.emptyHelp": "Create one, then add viewpoints of the model.",
        "topics.title": "Title",
        "topics.description": "Description",
        "topics.create": "Create issue",
        "topics.cancel": "Cancel",
        "topics.nameless": "Enter a title.",
        "topics.retry": "Try again",
        "topics.viewpoints": "Viewpoints: {count}",
        "topics.closed": "Closed",
        "topics.close": "Close issue",
        "topics.reopen": "Reopen issue",
        "topics.back": "All issues",

        "viewpoints.heading": "Viewpoints",
        "viewpoints.new": "New viewpoint",
        "viewpoints.loading": "Loading viewpoints…",
        "viewpoints.empty": "No viewpoints yet",
        "viewpoints.emptyHelp": "Set up the 3D window in perspective, select what matters, then take one.",
        "viewpoints.open": "Open viewpoint",
        "viewpoints.picture": "Viewpoint of {when}",
        "viewpoints.noPicture": "The picture could not be loaded.",
        "viewpoints.elements": "Selected elements",
        "viewpoints.noElements": "Nothing was selected.",
        "viewpoints.delete": "Delete viewpoint",
        "viewpoints.deleteQuestion": "Delete this viewpoint for everyone?",
        "viewpoints.snapshot": "Taking the snapshot…",
        "viewpoints.snapshotHint":
            "If Archicad has shown a message, cancel, do what it says, then take the viewpoint again.",
        "viewpoints.storing": "Storing the viewpoint…",
        "viewpoints.opening": "Opening the viewpoint…",
        "viewpoints.cancel": "Cancel",
        "viewpoints.stored": "Viewpoint stored",
        "viewpoints.opened": "Viewpoint opened",
        "viewpoints.failed": "That did not work",
        "viewpoints.noSnapshot":
            "No snapshot has arrived. Bring the 3D window to the front, in perspective (Alt+Shift+3), and check that the service is running; then take the viewpoint again.",
        "viewpoints.noView":
            "Archicad could not tell its 3D view. Bring the 3D window to the front, in perspective, then take the viewpoint again.",
        "viewpoints.refused":
            "The service did not accept the snapshot (“{said}”), so nothing was stored. Take the viewpoint again.",
        "viewpoints.refusedUnread":
            "The service did not accept the snapshot, so nothing was stored. Take the viewpoint again; if that fails too, tell your administrator.",
        "viewpoints.lostSnapshot":
            "The snapshot is not on the service, so nothing was stored. Take the viewpoint again.",
        "viewpoints.unreadable":
            "Archicad could not read this viewpoint. It is incomplete or was made for another program; take a new one.",

        "selection.heading": "Selection",
        "selection.empty": "Nothing selected",
        "selection.emptyHelp": "Elements that you select in Archicad are listed here.",
        "selection.all": "Select all again",

        "elements.show": "Select and zoom to {name}",
        "elements.missing": "{name} could not be shown. Check that it is in the open model.",
        "elements.more": "and {count} more",

        "host.heading": "About this host",
        "host.language": "Language",
        "host.languageName": "English",
        "host.addOnVersion": "Add-on version",
        "host.hostVersion": "Archicad version",
        "host.service": "Service",
        "host.project": "Open project",
        "host.none": "None",

        "error.unreachable":
            "The service at {address} does not answer. Check that it is running, then try again.",
        "error.unreadable":
            "The service at {address} gave an answer that cannot be read. Check the address with your administrator.",
        "error.credentials": "User name or password is wrong. Check both and try again.",
        "error.expired": "Your sign-in has expired. Sign in again; your choices are kept.",
        "error.gone": "It no longer exists on the service. Choose another project, folder or issue.",
        "error.exists": "This name is taken. Choose another name.",
        "error.full": "The service has no space left. Delete documents or ask your administrator for more.",
        "error.large":
            "This is too large for the service. Shorten the text, or select, show or hide fewer elements and take the viewpoint again.",
        "error.server": "The service had a problem ({said}). Try again in a moment.",
        "error.refused": "The service refused this ({said}). Check your entry and try again.",
    },
    de: {
        "app.title": "Kestrane für Archicad",
        "app.tagline": "Modellkoordination für Archicad",

        "signIn.heading": "Anmelden",
        "signIn.user": "Benutzername",
        "signIn.password": "Passwort",
        "signIn.submit": "Anmelden",
        "signIn.busy": "Anmeldung läuft…",
        "signIn.incomplete": "Geben Sie Benutzername und Passwort ein.",
        "signIn.hint": "Lokaler Dienst: demo / demo",
        "signIn.out": "Abmelden",
        "signIn.as": "Angemeldet als {user}",

        "start.failed": "Nicht verbunden",
        "start.retry": "Erneut versuchen",

        "noHost.title": "In Archicad öffnen",
        "noHost.body":
            "Um Ihr Modell hochzuladen, öffnen Sie diese Seite in der Kestrane-Palette. Dokumente können Sie auch hier lesen.",
        "noHost.plans":
            "Um Plandokumente zu erstellen, öffnen Sie diese Seite in der Kestrane-Palette. Dokumente können Sie auch hier lesen.",
        "noHost.mapping":
            "Um mit einer Eigenschaftszuordnung zu exportieren, öffnen Sie diese Seite in der Kestrane-Palette. Dokumente können Sie auch hier lesen.",
        "noHost.publish":
            "Um Ausschnitte und Layouts als Dokumente zu veröffentlichen, öffnen Sie diese Seite in der Kestrane-Palette.",
        "noHost.models":
            "Um Modelle zu öffnen, öffnen Sie diese Seite in der Kestrane-Palette. Aufgelistet werden sie auch hier.",
        "noHost.issues":
            "Um Viewpoints aufzunehmen und zu öffnen, öffnen Sie diese Seite in der Kestrane-Palette. Aufgaben können Sie auch hier lesen und schreiben.",

        "places.heading": "Ziel",
        "places.project": "Projekt",
        "places.folder": "Ordner",
        "places.newProject": "Neues Projekt",
        "places.newFolder": "Neuer Ordner",
        "places.projectName": "Name des neuen Projekts",
        "places.folderName": "Name des neuen Ordners",
        "places.noProject": "Noch kein Projekt",
        "places.noFolder": "Noch kein Ordner",
        "places.loading": "Wird geladen…",
        "places.unavailable": "Nicht verfügbar",
        "places.create": "Anlegen",
        "places.cancel": "Abbrechen",
        "places.retry": "Erneut versuchen",
        "places.nameless": "Geben Sie einen Namen ein.",

        "upload.heading": "Modell hochladen",
        "upload.model": "In Archicad geöffnet: {project}",
        "upload.noModel": "In Archicad ist kein Projekt geöffnet",
        "upload.fileName": "Dateiname",
        "upload.onlyVisible": "Nur sichtbare Elemente",
        "upload.onlyVisibleHelp": "Was das 3D-Fenster gerade zeigt",
        "upload.useMapFile": "Eigenschaftszuordnung anwenden",
        "upload.submit": "Modell hochladen",
        "upload.noFolder": "Wählen Sie zuerst einen Ordner oder legen Sie einen an.",
        "upload.running": "Export und Upload laufen…",
        "upload.runningHelp": "Sie können inzwischen weiterarbeiten.",
        "upload.stop": "Nicht mehr warten",
        "upload.done": "Hochgeladen",
        "upload.notDone": "Nicht hochgeladen",
        "upload.dismiss": "Meldung schließen",
        "upload.failed":
            "Das Modell konnte nicht exportiert werden, oder die Verbindung ist abgebrochen. Prüfen Sie, ob Archicad das Projekt als IFC sichern kann, und laden Sie es erneut hoch.",
        "upload.refused":
            "Der Dienst hat „{said}“ geantwortet. Laden Sie erneut hoch oder wählen Sie einen anderen Ordner.",
        "upload.unreadable":
            "Der Dienst hat keine lesbare Antwort gegeben. Aktualisieren Sie die Dokumente; fehlt das Modell, laden Sie es erneut hoch.",
        "upload.expired": "Ihre Anmeldung war abgelaufen. Laden Sie erneut hoch; Ihre Angaben sind noch da.",
        "upload.stoppedWaiting":
            "Der Upload ist noch offen. Endet er, steht sein Ergebnis hier; sonst laden Sie erneut hoch.",

        "fileName.empty": "Geben Sie einen Dateinamen ein.",
        "fileName.character": 'Nicht erlaubt sind Steuerzeichen und diese Zeichen: / \\ : * ? " < > |',
        "fileName.dots": "Nicht erlaubt sind Punkte am Anfang oder Ende und zwei Punkte hintereinander.",
        "fileName.long": "Wählen Sie einen kürzeren Namen.",

        "documents.heading": "Dokumente",
        "documents.refresh": "Aktualisieren",
        "documents.loading": "Dokumente werden geladen…",
        "documents.empty": "Keine Dokumente in diesem Ordner",
        "documents.emptyHelp": "Was Sie hochladen, erscheint hier.",
        "documents.noFolder": "Wählen Sie einen Ordner, um seine Dokumente zu sehen",
        "documents.version": "Version {version}",
        "documents.download": "{name} herunterladen",
        "documents.downloading": "{name} wird heruntergeladen…",
        "documents.retry": "Erneut versuchen",
        "documents.by": "von {author}",

        "tabs.label": "Ansichten",
        "tabs.documents": "Dokumente",
        "tabs.plans": "Pläne",
        "tabs.mapping": "Zuordnung",
        "tabs.publish": "Publisher",
        "tabs.models": "Modelle",
        "tabs.issues": "Aufgaben",

        "plans.heading": "Plandokument",
        "plans.intro": "Vom Grundriss, der in Archicad im Vordergrund ist.",
        "plans.format": "Format",
        "plans.help.dwg": "Für CAD-Programme: eine Ebene je Elementart, in Metern.",
        "plans.help.pdf": "Eine maßstäbliche Seite mit Linien, die scharf bleiben.",
        "plans.help.png": "Ein Bild mit scharfen Linien.",
        "plans.help.jpeg": "Ein Bild für Programme, die kein PNG annehmen.",
        "plans.proposed": "{name} Grundriss",
        "plans.submit": "Erstellen und hochladen",
        "plans.running": "Wird erstellt und hochgeladen…",
        "plans.runningHelp": "Zeigt Archicad eine Meldung, schließen Sie sie.",
        "plans.notMade":
            "Archicad hat keinen Plan erstellt. Holen Sie einen Grundriss mit Elementen nach vorn (nicht das 3D-Fenster), warten Sie, bis alle Formen gelesen sind, prüfen Sie, ob der Datenträger Platz hat, und versuchen Sie es erneut.",
        "plans.failed":
            "Der Plan wurde nicht gespeichert: Der Dienst hat ihn abgelehnt, oder Archicad hat schon eine andere Datei dieses Namens. Wählen Sie einen anderen Dateinamen und versuchen Sie es erneut.",
        "plans.lost":
            "Der Dienst antwortet nicht mehr. Prüfen Sie, ob er läuft, und aktualisieren Sie die Dokumente; fehlt der Plan, erstellen Sie ihn erneut und laden ihn hoch.",
        "plans.tooOld":
            "Das Kestrane-Add-on in diesem Archicad kann noch keine Plandokumente erstellen. Installieren Sie das aktuelle und starten Sie Archicad neu.",

        "mapping.heading": "Eigenschaftszuordnung",
        "mapping.intro": "Welche Eigenschaften von Archicad in welche Eigenschaftssätze der IFC-Datei kommen.",
        "mapping.noFile": "Keine Zuordnungsdatei gewählt",
        "mapping.choose": "Zuordnungsdatei wählen…",
        "mapping.notRead":
            "Es wurde keine Zuordnung gelesen. Haben Sie eine Datei gewählt, prüfen Sie, ob sie eine XML-Datei von höchstens 64 MB mit dem Wurzelelement SchemeItemList ist.",
        "mapping.names": "Neue Eigenschaften",
        "mapping.noNames": "Namen für Eigenschaften, die Sie Ihrer Zuordnung hinzufügen: Keiner wird zweimal vergeben.",
        "mapping.newName": "Neuer Eigenschaftsname…",
        "mapping.tooOld":
            "Das Kestrane-Add-on in diesem Archicad kann noch keine Eigenschaften zuordnen. Installieren Sie das aktuelle und starten Sie Archicad neu.",

        "models.heading": "Modelle",
        "models.refresh": "Aktualisieren",
        "models.loading": "Modelle werden geladen…",
        "models.noProject": "Wählen Sie ein Projekt, um seine Modelle zu sehen, oder legen Sie eines an.",
        "models.empty": "Keine Modelle in diesem Projekt",
        "models.emptyHelp": "Laden Sie eines unter Dokumente hoch, dann können Sie es hier öffnen.",
        "models.retry": "Erneut versuchen",
        "models.versionOf": "Version von {name}",
        "models.mergeInto": "Einfügen in",
        "models.mergesOne": "{names} wird in „{into}“ eingefügt.",
        "models.mergesMany": "{names} werden in dieser Reihenfolge in „{into}“ eingefügt.",
        "models.open": "In Archicad öffnen",
        "models.openCount": "In Archicad öffnen ({count})",
        "models.replaces": "Ersetzt das in Archicad geöffnete Projekt.",
        "models.downloading": "Wird heruntergeladen…",
        "models.downloadingHelp": "Danach öffnet Archicad das Heruntergeladene. Sichern Sie vorher Ihre Arbeit.",
        "models.opening": "Archicad öffnet…",
        "models.openingHelp": "Schließen Sie die Meldung von Archicad. Das Öffnen kann Minuten dauern.",
        "models.done": "Geöffnet",
        "models.mergedOne": "{names} wurde eingefügt.",
        "models.mergedMany": "{names} wurden eingefügt.",
        "models.failed": "Nicht geöffnet",
        "models.noFolder":
            "Archicad hat keinen Ordner für heruntergeladene Modelle. Prüfen Sie, ob der Datenträger Platz hat und Sie in Ihren Benutzerordner schreiben dürfen, und versuchen Sie es erneut.",
        "models.expired":
            "Ihre Anmeldung ist während des Herunterladens abgelaufen. Löschen Sie das gerade Heruntergeladene aus {folder}, denn es kann unvollständig sein; melden Sie sich an und öffnen Sie die Modelle erneut.",
        "models.notOpened":
            "„{name}“ konnte nicht geöffnet werden; Archicad hat gesagt, warum. Ist die Datei beschädigt, löschen Sie „{file}“ aus {folder} und öffnen Sie das Modell erneut: Es wird dann neu heruntergeladen.",
        "models.stoppedWaiting":
            "Archicad hat das Ende des Herunterladens oder Öffnens nicht gemeldet. Prüfen Sie, ob der Dienst läuft, und warten Sie einen Moment; öffnen Sie die Modelle dann erneut. Was schon da ist, wird nicht noch einmal heruntergeladen.",

        "publish.heading": "Publisher-Set",
        "publish.set": "Set",
        "publish.refresh": "Aktualisieren",
        "publish.retry": "Erneut versuchen",
        "publish.loading": "Publisher-Sets werden geladen…",
        "publish.noProject": "Wählen Sie ein Projekt, in das Sie veröffentlichen, oder legen Sie eines an.",
        "publish.noHeaders":
            "Archicad konnte seine Publisher-Sets nicht auflisten. Prüfen Sie, ob in Archicad ein Projekt geöffnet ist, und versuchen Sie es erneut.",
        "publish.noSets": "Keine Publisher-Sets in diesem Projekt",
        "publish.noSetsHelp": "Legen Sie in Archicad eines an (Dokumentation > Veröffentlichen) und aktualisieren Sie.",
        "publish.emptySet": "Dieses Set ist leer",
        "publish.emptySetHelp": "Fügen Sie in Archicad Ausschnitte oder Layouts hinzu und aktualisieren Sie.",
        "publish.tooOldTitle": "Add-on aktualisieren",
        "publish.tooOld":
            "Das Kestrane-Add-on in diesem Archicad kann noch nicht veröffentlichen. Installieren Sie das aktuelle und starten Sie Archicad neu.",
        "publish.folder": "{title} öffnen oder schließen",

        "publish.items": "Zu veröffentlichen",
        "publish.docName": "Dokumentname",
        "publish.discipline": "Gewerk",
        "publish.building": "Gebäude",
        "publish.floor": "Geschoss",
        "publish.fieldOf": "{field} von {title}",
        "publish.folderOf": "Ordner von {title}",
        "publish.standardFolder": "Wie oben",
        "publish.details": "Gewerk, Gebäude, Geschoss",
        "publish.common": "Gleich für alle",
        "publish.file": "Vorbereitete Datei: {path}",
        "publish.same":
            "Ein früherer Artikel hat diesen Dokumentnamen. Wählen Sie einen anderen; dieser Artikel fiele sonst weg, auch in einem anderen Ordner.",
        "publish.maybeSame":
            "Ein früherer Artikel hat diesen Dokumentnamen. Das geht nur, wenn ihre Dateien verschiedener Art sind.",
        "publish.state.prepared": "Vorbereitet",
        "publish.state.uploading": "Wird hochgeladen…",
        "publish.state.done": "Hochgeladen",
        "publish.state.failed": "Fehlgeschlagen",
        "publish.stored": "„{document}“ liegt in „{folder}“.",
        "publish.itemNotPrepared":
            "Archicad konnte diesen Artikel nicht veröffentlichen. Prüfen Sie in seinem Publisher, ob es Ausschnitt oder Layout und das Ausgabeformat noch gibt, und bereiten Sie erneut vor.",
        "publish.itemNotUploaded":
            "Nicht hochgeladen. Prüfen Sie, ob es den Ordner noch gibt und der Dienst läuft, und drücken Sie „Vorbereiten und hochladen“.",
        "publish.noAnswer":
            "Ob das hochgeladen wurde, ist nicht bekannt. Sehen Sie unter den Dokumenten des Ordners nach; fehlt es, laden Sie es erneut hoch.",

        "publish.publish": "Vorbereiten und hochladen ({count})",
        "publish.publishAgain": "Erneut vorbereiten und hochladen ({count})",
        "publish.prepare": "Nur vorbereiten ({count})",
        "publish.upload": "Nur hochladen ({count})",
        "publish.uploadAgain": "Erneut hochladen ({count})",
        "publish.nothing": "Haken Sie an, was veröffentlicht werden soll.",
        "publish.tooMany":
            "Höchstens {most} Artikel lassen sich auf einmal veröffentlichen. Nehmen Sie welche heraus und veröffentlichen Sie diese danach.",
        "publish.badNames": "Korrigieren Sie zuerst die markierten Dokumentnamen.",
        "publish.preparing": "Wird vorbereitet… ({count})",
        "publish.preparingHelp":
            "Schließen Sie die Meldung von Archicad. Danach veröffentlicht es in Dateien; das kann Minuten dauern.",
        "publish.uploading": "Wird hochgeladen… ({count})",
        "publish.uploadingHelp": "Sie können inzwischen weiterarbeiten.",
        "publish.prepared": "Vorbereitete Artikel: {count}. Laden Sie sie jetzt hoch.",
        "publish.uploaded": "Hochgeladene Dokumente: {count}",
        "publish.failed": "Nicht alles hat geklappt",
        "publish.notPrepared":
            "Archicad hat nichts vorbereitet. Prüfen Sie, ob der Datenträger Platz hat und Sie in Ihren temporären Ordner schreiben dürfen, und bereiten Sie erneut vor.",
        "publish.someNotPrepared":
            "Archicad konnte nicht alle Artikel veröffentlichen; fehlgeschlagen: {count}. Was zu tun ist, steht jeweils dabei. Die anderen sind vorbereitet und können hochgeladen werden.",
        "publish.noneReady":
            "Keiner der Artikel konnte vorbereitet werden; es wurde nichts hochgeladen. Was zu tun ist, steht jeweils dabei.",
        "publish.sameNames":
            "Mehrere Dokumente hätten denselben Namen; es wurde nichts hochgeladen. Ändern Sie die markierten Namen und laden Sie dann hoch.",
        "publish.nothingUploaded":
            "Archicad konnte nicht mit dem Hochladen beginnen: Es fand die vorbereiteten Dateien nicht oder hat keinen Platz für Kopien. Prüfen Sie den Platz auf dem Datenträger und drücken Sie „Vorbereiten und hochladen“.",
        "publish.someNotUploaded":
            "Artikel ohne Dokument: {count}. Was zu tun ist, steht jeweils dabei; ein Upload nimmt nur, was noch fehlt.",
        "publish.expired":
            "Ihre Anmeldung war abgelaufen. Melden Sie sich an und laden Sie erneut hoch; Vorbereitetes bleibt erhalten.",
        "publish.stoppedWaiting":
            "Archicad hat das Ende nicht gemeldet. Kommt es noch, steht das Ergebnis hier; sonst veröffentlichen Sie erneut.",
        "publish.stoppedPreparing":
            "Archicad hat das Ende nicht gemeldet. Ist es so weit, veröffentlichen Sie erneut; was es vorbereitet hat, bleibt erhalten.",
        "publish.anew": "Hat sich ein Plan seither geändert?",
        "publish.anewHelp":
            "Archicad behält, was es vorbereitet hat, und verwendet es wieder, auch wenn sich der Plan geändert hat. Um einen Artikel neu vorzubereiten, löschen Sie seine Datei aus {folder} (ihr Name steht bei den Angaben des Artikels) und bereiten Sie erneut vor.",

        "history.heading": "Verlauf",
        "history.empty": "Was aus diesem Archicad hochgeladen wird, steht hier.",
        "history.model": "Modell",
        "history.plan": "Plan",
        "history.snapshot": "Bild",
        "history.document": "Veröffentlicht",

        "topics.heading": "Aufgaben",
        "topics.new": "Neue Aufgabe",
        "topics.refresh": "Aktualisieren",
        "topics.loading": "Aufgaben werden geladen…",
        "topics.noProject": "Wählen Sie ein Projekt, um seine Aufgaben zu sehen, oder legen Sie eines an.",
        "topics.empty": "Keine Aufgaben in diesem Projekt",
        "topics.emptyHelp": "Legen Sie eine an und fügen Sie dann Viewpoints des Modells hinzu.",
        "topics.title": "Titel",
        "topics.description": "Beschreibung",
        "topics.create": "Aufgabe anlegen",
        "topics.cancel": "Abbrechen",
        "topics.nameless": "Geben Sie einen Titel ein.",
        "topics.retry": "Erneut versuchen",
        "topics.viewpoints": "Viewpoints: {count}",
        "topics.closed": "Erledigt",
        "topics.close": "Als erledigt markieren",
        "topics.reopen": "Wieder öffnen",
        "topics.back": "Alle Aufgaben",

        "viewpoints.heading": "Viewpoints",
        "viewpoints.new": "Neuer Viewpoint",
        "viewpoints.loading": "Viewpoints werden geladen…",
        "viewpoints.empty": "Noch keine Viewpoints",
        "viewpoints.emptyHelp":
            "Stellen Sie das 3D-Fenster perspektivisch ein, wählen Sie aus, worum es geht, und nehmen Sie dann einen auf.",
        "viewpoints.open": "Viewpoint öffnen",
        "viewpoints.picture": "Viewpoint vom {when}",
        "viewpoints.noPicture": "Das Bild konnte nicht geladen werden.",
        "viewpoints.elements": "Ausgewählte Elemente",
        "viewpoints.noElements": "Es war nichts ausgewählt.",
        "viewpoints.delete": "Viewpoint löschen",
        "viewpoints.deleteQuestion": "Diesen Viewpoint für alle löschen?",
        "viewpoints.snapshot": "Das Bild wird aufgenommen…",
        "viewpoints.snapshotHint":
            "Hat Archicad eine Meldung gezeigt, brechen Sie ab, folgen Sie ihr und nehmen Sie den Viewpoint erneut auf.",
        "viewpoints.storing": "Der Viewpoint wird gespeichert…",
        "viewpoints.opening": "Der Viewpoint wird geöffnet…",
        "viewpoints.cancel": "Abbrechen",
        "viewpoints.stored": "Viewpoint gespeichert",
        "viewpoints.opened": "Viewpoint geöffnet",
        "viewpoints.failed": "Das hat nicht geklappt",
        "viewpoints.noSnapshot":
            "Es ist kein Bild angekommen. Holen Sie das 3D-Fenster perspektivisch nach vorn (Alt+Umsch+3) und prüfen Sie, ob der Dienst läuft; nehmen Sie den Viewpoint dann erneut auf.",
        "viewpoints.noView":
            "Archicad konnte seine 3D-Ansicht nicht mitteilen. Holen Sie das 3D-Fenster perspektivisch nach vorn und nehmen Sie den Viewpoint erneut auf.",
        "viewpoints.refused":
            "Der Dienst hat das Bild nicht angenommen („{said}“); es wurde nichts gespeichert. Nehmen Sie den Viewpoint erneut auf.",
        "viewpoints.refusedUnread":
            "Der Dienst hat das Bild nicht angenommen; es wurde nichts gespeichert. Nehmen Sie den Viewpoint erneut auf; misslingt auch das, wenden Sie sich an Ihre Administration.",
        "viewpoints.lostSnapshot":
            "Das Bild ist nicht auf dem Dienst; es wurde nichts gespeichert. Nehmen Sie den Viewpoint erneut auf.",
        "viewpoints.unreadable":
            "Archicad konnte diesen Viewpoint nicht lesen. Er ist unvollständig oder für ein anderes Programm bestimmt; nehmen Sie einen neuen auf.",

        "selection.heading": "Auswahl",
        "selection.empty": "Nichts ausgewählt",
        "selection.emptyHelp": "Elemente, die Sie in Archicad auswählen, stehen hier.",
        "selection.all": "Alle wieder auswählen",

        "elements.show": "{name} auswählen und heranzoomen",
        "elements.missing": "{name} konnte nicht gezeigt werden. Prüfen Sie, ob es im geöffneten Modell ist.",
        "elements.more": "und {count} weitere",

        "host.heading": "Über diese Umgebung",
        "host.language": "Sprache",
        "host.languageName": "Deutsch",
        "host.addOnVersion": "Add-on-Version",
        "host.hostVersion": "Archicad-Version",
        "host.service": "Dienst",
        "host.project": "Geöffnetes Projekt",
        "host.none": "Keines",

        "error.unreachable":
            "Der Dienst unter {address} antwortet nicht. Prüfen Sie, ob er läuft, und versuchen Sie es erneut.",
        "error.unreadable":
            "Die Antwort des Dienstes unter {address} ist nicht lesbar. Prüfen Sie die Adresse mit Ihrer Administration.",
        "error.credentials":
            "Benutzername oder Passwort ist falsch. Prüfen Sie beides und versuchen Sie es erneut.",
        "error.expired":
            "Ihre Anmeldung ist abgelaufen. Melden Sie sich erneut an; Ihre Auswahl bleibt erhalten.",
        "error.gone":
            "Das gibt es auf dem Dienst nicht mehr. Wählen Sie ein anderes Projekt, einen anderen Ordner oder eine andere Aufgabe.",
        "error.exists": "Dieser Name ist vergeben. Wählen Sie einen anderen.",
        "error.full":
            "Der Dienst hat keinen Platz mehr. Löschen Sie Dokumente oder wenden Sie sich an Ihre Administration.",
        "error.large":
            "Das ist zu groß für den Dienst. Kürzen Sie den Text, oder wählen, zeigen oder verbergen Sie weniger Elemente und nehmen Sie den Viewpoint erneut auf.",
        "error.server": "Der Dienst hatte ein Problem ({said}). Versuchen Sie es gleich noch einmal.",
        "error.refused":
            "Der Dienst hat das abgelehnt ({said}). Prüfen Sie Ihre Eingabe und versuchen Sie es erneut.",
    },
};

let current = "en";

export const language = () => current;

/** Chooses the language of all later texts; any other than the known ones means English. */
export function setLanguage(code) {
    current = Object.hasOwn(texts, code) ? code : "en";
}

/** The text of this key with its places filled in. */
export function text(key, values = {}) {
    return texts[current][key].replace(/\{(\w+)\}/g, (_, name) => String(values[name]));
}
