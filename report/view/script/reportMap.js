// The height map of a report, below its heading.

async function show() {
    await showMap(view.map, add(document.getElementById("live"), "section", "", {id: "map"}));
}
