// Starts the page. Each kind of page has its own show().

function tellTime(what) {
    const output = document.getElementById("time");
    output.textContent += `${output.textContent ? "; " : ""}${what} after ${Math.round(performance.now())} ms`;
}

async function start() {
    document.documentElement.classList.add("live");
    await show();
    document.documentElement.dataset.ready = "yes";
}

start().catch((error) => {
    document.documentElement.classList.remove("live");
    const note = document.getElementById("time");
    note.textContent = `This browser shows the picture only: ${error.message}`;
    document.documentElement.dataset.ready = "no";
});
