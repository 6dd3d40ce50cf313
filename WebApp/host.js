/* global KESTAPI */
const patience = 1500;
const interval = 25;

const publishing = [
    "GetPublishSetHeaders",
    "GetPublishSetItems",
    "PreparePublishDocs",
    "HandlePublishSets",
    "CompleteExportPublish",
    "GetPublishHistory",
    "GetPublishItems",
    "SetPublishHistory",
    "SavePublishHistory",
    "GetExportHistory",
    "SaveExportHistoryData",
];

const planning = ["Create2dPlan", "Export2dPlan", "GetPlanDocuments"];

const mapping = ["OpenMappingFile", "SetNewPropertyName"];

const knows = (names) => names.every((name) => typeof KESTAPI[name] === "function");

// The host may bind the object as a global that is no property of the window.
const isThere = () => typeof KESTAPI !== "undefined" && KESTAPI !== null;

/** The host application around this page, or nothing when the page was opened in a browser of its own. */
export class Host {
    /** The host, or null when none shows up within a moment. */
    static async find() {
        for (let waited = 0; !isThere() && waited < patience; waited += interval) {
            await new Promise((resolve) => setTimeout(resolve, interval));
        }
        return isThere() ? new Host() : null;
    }

    /** What the host says about itself, as one line of text. */
    applicationInfo() {
        return KESTAPI.GetApplicationInfo();
    }

    /** The open project's name, empty when the host has none. */
    async projectName() {
        return String((await KESTAPI.RequestFileName()) ?? "");
    }

    registerFileName(name) {
        return KESTAPI.RegisterIfcFileName(name);
    }

    /**
     * Has the open model exported and uploaded. The answer only says that it was begun; the host calls
     * CompleteExportModel or FailExportModel in the page when it ended.
     */
    exportModel({ token, projectId, folderId, fileName, onlyVisible, useMapFile = false }) {
        return KESTAPI.ExportIFCModel(
            JSON.stringify({ token, projectId, folderId, fileName, onlyVisible, useMapFile }),
        );
    }

    /** The service's answer to the last upload that it answered; empty before the first. */
    async uploadAnswer() {
        return String((await KESTAPI.GetIfcDocuments()) ?? "");
    }

    /** Path of the folder into which the host downloads models; empty when there is none. */
    async resourceFolder() {
        return String((await KESTAPI.GetResourceFolder()) ?? "");
    }

    /**
     * Has the host download models that it does not have yet; it calls CompleteImportModels in the page when all
     * downloads have ended, however they ended. modelInfos: [{ id, name, version, extension }].
     */
    async importModels({ token, modelInfos }) {
        return KESTAPI.ImportIfcFiles(JSON.stringify({ token, modelInfos }));
    }

    /** Opens the downloaded models and merges them into the last one; answers when that is done, or has failed. */
    openModels() {
        return KESTAPI.OpenIfcModels();
    }

    /** From now on the host calls UpdateSelectedElements when the selection changed, or no longer. */
    watchSelection(watched) {
        return KESTAPI.AddComponent(watched);
    }

    /** The selected elements, each as a JSON text of its IFC GUID and name. */
    async selectedElements() {
        return (await KESTAPI.GetSelectedElements()) ?? [];
    }

    /** Selects these elements and no others; switches cutting planes off. */
    highlight(ifcGuids) {
        return KESTAPI.HighlightElements(ifcGuids);
    }

    /** Whether the open model has the element and the view went there. */
    async zoomTo(ifcGuid) {
        return (await KESTAPI.ZoomToElement([ifcGuid])) === true;
    }

    /**
     * Has a picture of the 3D view uploaded. The answer comes when the person has closed whatever the host had
     * to say; the host calls InsertViewpoint when the picture was uploaded, and nothing when it was not.
     */
    exportSnapshot({ token, projectId }) {
        return KESTAPI.ExportSnapshot(JSON.stringify({ token, projectId }));
    }

    /** The 3D view as JSON text, with the id of the last uploaded picture; empty when it cannot be read. */
    async viewpoint() {
        return String((await KESTAPI.AddViewpoint()) ?? "");
    }

    /** Shows what the viewpoint's object describes; false when the host cannot read it. */
    async openViewpoint(viewpoint) {
        return (await KESTAPI.SelectViewpoint(viewpoint)) === true;
    }

    /** Whether the host makes plan documents; an older one does not. */
    canMakePlans() {
        return knows(planning);
    }

    /**
     * Has a document of the current plan made, of a plan format's kind. Answers its path when that is done and
     * the person has closed whatever the host had to say; empty when there is none.
     */
    async createPlan(kind) {
        return String((await KESTAPI.Create2dPlan(kind)) ?? "");
    }

    /**
     * Has the document made last uploaded under this name. The host calls CompleteExportPlan or FailExportPlan in
     * the page when the service answered, FailExportPlan when it could not begin, and nothing when the connection
     * broke.
     */
    exportPlan({ token, projectId, folderId, fileName }) {
        return KESTAPI.Export2dPlan(JSON.stringify({ token, projectId, folderId, fileName }));
    }

    /** The service's answer to the last plan that it took; empty before the first. */
    async planAnswer() {
        return String((await KESTAPI.GetPlanDocuments()) ?? "");
    }

    /** Whether the host maps properties; an older one does not. */
    canMap() {
        return knows(mapping);
    }

    /** Has the person choose a mapping file and reads it. Answers its path, empty when nothing was read. */
    async openMappingFile() {
        return String((await KESTAPI.OpenMappingFile()) ?? "");
    }

    /** Asks the person for a name that is none of these; empty when there is none. */
    async newPropertyName(namesInUse) {
        return String((await KESTAPI.SetNewPropertyName(namesInUse)) ?? "");
    }

    /** Whether the host knows publisher sets; an older one does not. */
    canPublish() {
        return knows(publishing);
    }

    /** JSON text of the project's publisher sets, [{ title, guid, rootGuid, index }]; empty when that failed. */
    async publishSets() {
        return String((await KESTAPI.GetPublishSetHeaders()) ?? "");
    }

    /** JSON text of the tree below a set's root, see logic/publish-tree.js; empty when there is nothing. */
    async publishTree(rootGuid) {
        return String((await KESTAPI.GetPublishSetItems(JSON.stringify({ rootGuid }))) ?? "");
    }

    /**
     * Has items of a set published into files. Answers when that is done, which can take minutes, with JSON text
     * of those that have a file: the items with filePath and ext added. It tells the person which ones have none.
     */
    async preparePublish({ guid, projectId, publishItems }) {
        const request = { guid, publishItems, projectId, publishSet: guid };
        return String((await KESTAPI.PreparePublishDocs(JSON.stringify(request))) ?? "");
    }

    /**
     * Has prepared files uploaded, all at once. The host calls CompleteExportPublish in the page when all have
     * ended, and FailedExportPublish when it could not begin. publishItems: [{ key, docName, ext, filePath, folder }].
     */
    uploadPublish({ projectId, token, publishItems }) {
        return KESTAPI.HandlePublishSets(JSON.stringify({ projectId, token, publishItems }));
    }

    /** JSON text of the ids of the documents that the last upload of published items made, by the items' keys. */
    async publishedDocuments() {
        return String((await KESTAPI.CompleteExportPublish()) ?? "");
    }

    /** Has the host read the project's selection from its file, unless it is the one that it holds. */
    loadPublishSelection(projectId) {
        return KESTAPI.GetPublishHistory(projectId);
    }

    /** JSON text { publishSet, publishItems } of the selection that the host holds; "[]" if it is no such project's. */
    async publishSelection(projectId) {
        return String((await KESTAPI.GetPublishItems(projectId)) ?? "");
    }

    /** Has the selection remembered until the host ends; both are texts. */
    rememberPublishSelection({ projectId, publishSet, publishItems }) {
        return KESTAPI.SetPublishHistory(JSON.stringify({ projectId, publishSet, publishItems }));
    }

    /** Has the selection that is remembered kept for good. */
    savePublishSelection() {
        return KESTAPI.SavePublishHistory();
    }

    /** The text kept for the project about exported models, or about everything else. */
    async exportHistory(projectId, model) {
        return String((await KESTAPI.GetExportHistory(JSON.stringify({ projectId, model }))) ?? "");
    }

    saveExportHistory(projectId, isModel, data) {
        return KESTAPI.SaveExportHistoryData(JSON.stringify({ projectId, data, isModel }));
    }
}
