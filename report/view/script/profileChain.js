// The page of a chain of operations: before and after, and what was fitted.

async function show() {
    const profiles = await readProfiles(view.profiles);
    profiles.forEach((p, i) => Object.assign(p, view.looks[i]));
    for (const part of view.plots) {
        const plot = new LinePlot(addPart(part.title, part.id), `${part.id}-plot`, part.x, part.y);
        plot.show(profiles.slice(part.from, part.to), view.gap);
    }
    tellTime("First picture");
}
