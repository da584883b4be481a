// The page of profiles: all on one plot, and their deviations.

function showProfiles(profiles) {
    const plot = new LinePlot(addPart("Profiles", "profiles"), "plot", "x, mm", "y, mm");
    plot.show(profiles, view.gap);
    tellTime("First picture");
}

async function showDeviations(profiles) {
    const deviation = await numbers(view.deviation.block, profiles.slice(0, 1).map((p) => p.x.length));
    const plot = new LinePlot(addPart("Deviation", "deviation"), "deviation-plot", "x, mm", "deviation along y, mm");
    plot.show([{name: view.deviation.name, x: profiles[0].x, y: deviation}], view.gap);
}

async function show() {
    const profiles = await readProfiles(view.profiles);
    showProfiles(profiles);
    if (view.deviation) await showDeviations(profiles);
}
