import { element } from "../dom.js";
import { text } from "../text.js";
import { chooser } from "./chooser.js";

/** The views that put nothing into a folder. */
const folderless = ["models", "issues"];

/**
 * The choice of project and folder. `chosenProject` follows it, and `place`: { project, folder }; both are null
 * while there is none.
 */
export function placesView({ service, chosenProject, place, choices, view, signal }) {
    let project = null;

    const folders = chooser({
        id: "folder",
        words: {
            label: "places.folder",
            none: "places.noFolder",
            add: "places.newFolder",
            name: "places.folderName",
        },
        list: () => service.folders(project.id),
        create: (name) => service.createFolder(project.id, name),
        chosen(folder) {
            place.set(project && folder ? { project, folder } : null);
            if (folder) choices.set({ ...choices.get(), projectId: project.id, folderId: folder.id });
        },
    });

    const projects = chooser({
        id: "project",
        words: {
            label: "places.project",
            none: "places.noProject",
            add: "places.newProject",
            name: "places.projectName",
        },
        list: () => service.projects(),
        create: (name) => service.createProject(name),
        chosen(next) {
            project = next;
            chosenProject.set(project);
            if (project) folders.load(choices.get()?.folderId);
            else folders.clear();
        },
    });

    view.watch((shown) => (folders.view.hidden = folderless.includes(shown)), signal);
    projects.load(choices.get()?.projectId);
    return element(
        "section",
        { class: "card places", "aria-label": text("places.heading") },
        projects.view,
        folders.view,
    );
}
