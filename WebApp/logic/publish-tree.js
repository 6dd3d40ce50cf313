// The tree of a publisher set: nodes { title, key, children } and { title, key, isLeaf: true }.

const isFolder = (node) => Array.isArray(node.children);

/** The items in and below the nodes, in their order; folders are none. */
export function leavesOf(nodes) {
    const leaves = [];
    const collect = (node) => (isFolder(node) ? node.children.forEach(collect) : leaves.push(node));
    nodes.forEach(collect);
    return leaves;
}

/** How the nodes' boxes stand: a Map from key to "on", "off" or "some". ticked: the ticked items' keys. */
export function tickStates(nodes, ticked) {
    const states = new Map();
    const stateOf = (node) => {
        const state = isFolder(node)
            ? together(node.children.map(stateOf))
            : ticked.has(node.key)
              ? "on"
              : "off";
        states.set(node.key, state);
        return state;
    };
    nodes.forEach(stateOf);
    return states;
}

function together(states) {
    const [first = "off"] = states;
    return states.every((state) => state === first) ? first : "some";
}

/** The set of ticked keys after the node's box was ticked or cleared, with all items below it. */
export function withTick(ticked, node, on) {
    const next = new Set(ticked);
    for (const { key } of leavesOf([node])) {
        if (on) next.add(key);
        else next.delete(key);
    }
    return next;
}

/** The titles of the folders around each item, from the outermost one: a Map from the item's key. */
export function foldersOf(nodes, outer = [], found = new Map()) {
    for (const node of nodes) {
        if (isFolder(node)) foldersOf(node.children, [...outer, node.title], found);
        else found.set(node.key, outer);
    }
    return found;
}
