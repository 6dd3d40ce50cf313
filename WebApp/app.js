import { element, mark, notice } from "./dom.js";
import { ExportHistory } from "./export-history.js";
import { Host } from "./host.js";
import { proposedFileName } from "./logic/file-name.js";
import { readHostInfo } from "./logic/host-info.js";
import { Mapping } from "./mapping.js";
import * as memory from "./memory.js";
import { ModelWork } from "./models.js";
import { Pictures } from "./pictures.js";
import { PlanUpload } from "./plan-upload.js";
import { PublishChoice } from "./publish-choice.js";
import { Publishing } from "./publishing.js";
import { Selection } from "./selection.js";
import { Service } from "./service.js";
import { language, setLanguage, text } from "./text.js";
import { Upload } from "./upload.js";
import { Value } from "./value.js";
import { mainView } from "./views/main.js";
import { signInView } from "./views/sign-in.js";
import { views } from "./views/tabs.js";
import { ViewpointWork } from "./viewpoints.js";

const root = document.getElementById("app");
const project = new Value("");
const chosenProject = new Value(null);
const place = new Value(null);
const view = new Value(views.includes(memory.shownView.get()) ? memory.shownView.get() : views[0]);
const modelChoices = new Map();
const draft = new Value({ fileName: "", onlyVisible: false });
const planDraft = new Value({ fileName: "", format: memory.planDraft.get()?.format });
let screen = new AbortController();

const host = await Host.find();
const info = host && readHostInfo(await host.applicationInfo().catch(() => ""));
setLanguage(info ? info.language : navigator.language.slice(0, 2));
document.documentElement.lang = language();
document.title = text("app.title");

const service = new Service(info ? info.apiBase : new URL("api/", document.baseURI).href);
const exportHistory = new ExportHistory(host);
const upload = new Upload(host, service, memory.pendingUpload, (projectId, { name }) =>
    exportHistory.add(projectId, true, [entry("model", name)]),
);
const planUpload = new PlanUpload(host, service, memory.pendingPlan, (projectId, { name }) =>
    exportHistory.add(projectId, false, [entry("plan", name)]),
);
const publishChoice = new PublishChoice(host);
const publishing = new Publishing(host, service, publishChoice, exportHistory, memory.pendingPublish);
const modelWork = new ModelWork(host, service, memory.pendingModels, () => takeProjectName(true));
const pictures = new Pictures(service);
const viewpoints = new ViewpointWork(host, service, pictures);
const mapping = new Mapping(host, memory.mapping);
const selection = new Selection(host);

service.token = memory.signedIn.get()?.token ?? null;
service.onSignInExpired = () => showSignIn(text("error.expired"));

draft.watch((filled) => {
    if (project.get()) memory.draft.set({ project: project.get(), ...filled });
});

planDraft.watch((filled) => {
    if (project.get()) memory.planDraft.set({ project: project.get(), ...filled });
});

view.watch((shown) => memory.shownView.set(shown));

viewpoints.stored.addEventListener("change", () => {
    const { projectId, viewpoint } = viewpoints.stored.get();
    exportHistory.add(projectId, false, [entry("snapshot", viewpoint.snapshot)]);
});

if (host) publishing.resume(); // before views ask what is picked
await openScreen();
if (host) {
    modelWork.resume(); // before the calls that came meanwhile
    window.listenToPageCalls({
        RequestFileName: () => takeProjectName(false),
        CompleteExportModel: () => upload.complete(),
        FailExportModel: () => upload.fail(),
        CompleteExportPlan: () => planUpload.complete(),
        FailExportPlan: () => planUpload.fail(),
        InsertViewpoint: () => viewpoints.insert(),
        CompleteImportModels: () => modelWork.complete(),
        UpdateSelectedElements: () => selection.update(),
        CompleteExportPublish: () => publishing.complete(),
        FailedExportPublish: () => publishing.fail(),
    });
    await takeProjectName(true);
    await upload.resume();
    if (host.canMakePlans()) await planUpload.resume();
}

/** An entry of the history about what was just exported from the open project. */
function entry(kind, exported) {
    return { time: new Date().toISOString(), kind, name: project.get(), document: exported };
}

/** Learns and gives the open project's name; what was filled in for this very project may be kept. */
async function takeProjectName(keepDraft) {
    const name = await host.projectName().catch(() => "");
    const kept = memory.draft.get();
    project.set(name);
    if (keepDraft && kept?.project === name) {
        draft.set({ fileName: kept.fileName, onlyVisible: kept.onlyVisible });
    } else {
        draft.set({ ...draft.get(), fileName: proposedFileName(name) });
    }
    const plan = memory.planDraft.get();
    const keepPlan = keepDraft && plan?.project === name;
    planDraft.set({
        ...planDraft.get(),
        fileName: keepPlan ? plan.fileName : text("plans.proposed", { name: proposedFileName(name) }).trim(),
    });
    await host.registerFileName(name).catch(() => {});
    return name;
}

async function openScreen() {
    if (!service.token) {
        showSignIn();
        return;
    }
    try {
        const session = await service.session();
        showMain(session.user ?? memory.signedIn.get().user);
    } catch (error) {
        if (error.status !== 401) showUnreachable(error.message);
    }
}

/** Replaces what the window shows; the watchers of the former screen end. */
function show(make) {
    screen.abort();
    screen = new AbortController();
    root.className = "";
    root.replaceChildren(make(screen.signal));
}

function showSignIn(message) {
    memory.signedIn.set(null);
    chosenProject.set(null);
    place.set(null);
    const { view, ready } = signInView({
        service,
        message,
        lastUser: memory.choices.get()?.user ?? "",
        onSignedIn({ token, user }) {
            memory.signedIn.set({ token, user });
            memory.choices.set({ ...memory.choices.get(), user });
            showMain(user);
        },
    });
    show(() => view);
    ready();
}

function showMain(user) {
    show((signal) =>
        mainView({
            user,
            host,
            info,
            service,
            upload,
            planUpload,
            modelWork,
            modelChoices,
            publishChoice,
            publishing,
            publishValues: memory.publishValues,
            exportHistory,
            mapping,
            pictures,
            viewpoints,
            selection,
            project,
            chosenProject,
            place,
            view,
            draft,
            planDraft,
            choices: memory.choices,
            signal,
            onSignOut() {
                service.signOut().catch(() => {});
                upload.forget();
                planUpload.forget();
                modelWork.forget();
                publishing.forget();
                publishChoice.forget();
                viewpoints.dismiss();
                showSignIn();
            },
        }),
    );
}

function showUnreachable(message) {
    const retry = element(
        "button",
        { type: "button", class: "primary wide", onclick: openScreen },
        text("start.retry"),
    );
    show(() =>
        element(
            "main",
            { class: "gate" },
            mark(56),
            element("h1", {}, text("start.failed")),
            element("div", { class: "card", role: "alert" }, notice("failed", message), retry),
        ),
    );
}
