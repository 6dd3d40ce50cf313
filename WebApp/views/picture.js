import { element, icon } from "../dom.js";
import { text } from "../text.js";

/** A picture of the service, or a drawing while there is none. It is fetched when it comes into sight. */
export function picture(resourceId, pictures, alternative) {
    const view = element("span", { class: "picture" }, icon("view"));
    if (!resourceId) return view;
    const sight = new IntersectionObserver((changes) => {
        if (!changes.some(({ isIntersecting }) => isIntersecting)) return;
        sight.disconnect();
        pictures.address(resourceId).then(
            (address) => view.replaceChildren(element("img", { src: address, alt: alternative })),
            () => view.setAttribute("title", text("viewpoints.noPicture")),
        );
    });
    sight.observe(view);
    return view;
}
