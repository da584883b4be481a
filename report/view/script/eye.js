// From where a surface or cloud is seen: turned and zoomed by buttons, keys, pointer and wheel.

class Eye {
    static HELP = "Drag or arrow keys turn, + and \u2212 zoom, 0 looks as at first, 9 from above.";

    /// @param lowest pitch, radians; @param draw is called after each change
    constructor(host, {yaw, pitch, lowest}, draw) {
        Object.assign(this, {lowest, draw, scale: 1, yaw, pitch, first: [yaw, pitch, 1]});
        this.tools = add(host, "div", "", {class: "tools"});
        for (const [sign, title, yawBy, pitchBy, factor] of [["\u2190", "Turn left", -0.15, 0, 1],
            ["\u2192", "Turn right", 0.15, 0, 1], ["\u2191", "Look from higher", 0, 0.15, 1],
            ["\u2193", "Look from lower", 0, -0.15, 1], ["+", "Zoom in", 0, 0, 1.25], ["\u2212", "Zoom out", 0, 0, 0.8]]) {
            addButton(this.tools, sign, title, () => this.turn(yawBy, pitchBy, factor));
        }
        addButton(this.tools, "Above", "Look from above", () => this.look(0, Math.PI / 2, 1));
    }

    angles() {
        return {cy: Math.cos(this.yaw), sy: Math.sin(this.yaw), cp: Math.cos(this.pitch), sp: Math.sin(this.pitch)};
    }

    look(yaw, pitch, scale) {
        Object.assign(this, {yaw, pitch, scale});
        this.draw();
    }

    turn(yaw, pitch, factor = 1) {
        this.look(this.yaw + yaw, Math.min(Math.PI / 2, Math.max(this.lowest, this.pitch + pitch)),
            Math.min(1000, Math.max(0.2, this.scale * factor)));
    }

    /// @param click is called where the pointer did not move
    listen(canvas, click = () => {}) {
        let moved = 0;
        canvas.addEventListener("pointerdown", (event) => {
            moved = 0;
            canvas.setPointerCapture(event.pointerId);
        });
        canvas.addEventListener("pointermove", (event) => {
            if (!canvas.hasPointerCapture(event.pointerId)) return;
            moved += Math.abs(event.movementX) + Math.abs(event.movementY);
            this.turn(event.movementX * 0.01, event.movementY * 0.01);
        });
        canvas.addEventListener("pointerup", (event) => { if (moved < 5) click(event); });
        onWheel(canvas, (isIn) => this.turn(0, 0, isIn ? 1.15 : 0.87));
        onKeys(canvas, {ArrowLeft: () => this.turn(-0.1, 0), ArrowRight: () => this.turn(0.1, 0),
            ArrowUp: () => this.turn(0, 0.1), ArrowDown: () => this.turn(0, -0.1), "+": () => this.turn(0, 0, 1.25),
            "-": () => this.turn(0, 0, 0.8), 0: () => this.look(...this.first), 9: () => this.look(0, Math.PI / 2, 1)});
    }
}
