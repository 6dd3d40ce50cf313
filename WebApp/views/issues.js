import { element } from "../dom.js";
import { Value } from "../value.js";
import { topicListView } from "./topic-list.js";
import { topicView } from "./topic.js";

/** The issues of the chosen project: their list, or the one that was opened from it. */
export function issuesView({ chosenProject, signal, ...parts }) {
    const topic = new Value(null);
    const list = topicListView({ ...parts, chosenProject, topic, signal });
    const holder = element("div", {}, list.view);
    let opened = new AbortController();
    let shown = null;

    chosenProject.watch(() => topic.set(null), signal);
    signal.addEventListener("abort", () => opened.abort());
    topic.watch((next) => {
        const former = shown;
        shown = next;
        if (next === null) {
            opened.abort();
            if (former === null) return;
            holder.replaceChildren(list.view);
            list.load(former.id);
            return;
        }
        if (former?.id === next.id) return;
        opened.abort();
        opened = new AbortController();
        const made = topicView({ ...parts, chosenProject, topic, signal: opened.signal });
        holder.replaceChildren(made.view);
        made.ready();
    }, signal);
    return holder;
}
