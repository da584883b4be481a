// A height map as a lit surface, by WebGL 2: each pixel has the colour of its own cell; the shape is a mesh of at most
// 300 000 of the cells.

const MESH = 300000;

const VERTEX = `#version 300 es
precision highp float;
precision highp int;
uniform highp sampler2D heights;
uniform mat3 turn;
uniform vec3 size;     // of the box
uniform vec2 view;     // scale of both axes
uniform vec2 range;
uniform ivec2 cells;
uniform ivec2 mesh;
uniform bool base;
out vec2 place;
out float hole;
void main() {
    ivec2 at = ivec2(gl_VertexID % mesh.x, gl_VertexID / mesh.x);
    place = base ? vec2(gl_VertexID & 1, gl_VertexID >> 1) : vec2(at) / vec2(mesh - 1);
    float h = base ? range.x : texelFetch(heights, ivec2(place * vec2(cells - 1) + 0.5), 0).r;
    hole = h < -1e29 ? 1.0 : 0.0;
    float up = (clamp(hole > 0.0 ? range.x : h, range.x, range.y) - range.x) / (range.y - range.x) - 0.5;
    vec3 p = turn * (vec3(place.y - 0.5, up, 0.5 - place.x) * size);
    gl_Position = vec4(p.xy * view, -p.z * 0.1, 1.0);
}`;

const FRAGMENT = `#version 300 es
precision highp float;
precision highp int;
uniform highp sampler2D heights;
uniform sampler2D colours;
uniform mat3 turn;
uniform vec3 size;
uniform vec2 range;
uniform ivec2 cells;
uniform bool base;
uniform bool lit;
in vec2 place;
in float hole;
out vec4 colour;
float at(ivec2 c) { return texelFetch(heights, clamp(c, ivec2(0), cells - 1), 0).r; }
float slope(float a, float b, float h) { return a < -1e29 ? (b < -1e29 ? 0.0 : (b - h) * 2.0) : b < -1e29 ? (h - a) * 2.0 : b - a; }
void main() {
    ivec2 c = ivec2(place * vec2(cells - 1) + 0.5);
    float h = at(c);
    if (base) { // below missing cells only
        if (h > -1e29) discard;
        bool dark = mod(gl_FragCoord.x + gl_FragCoord.y, 8.0) < 1.0;
        colour = dark ? vec4(0.557, 0.420, 0.749, 1) : vec4(0.851, 0.784, 0.933, 1);
        return;
    }
    if (hole > 0.0 || h < -1e29) discard;
    float part = clamp((h - range.x) / (range.y - range.x), 0.0, 1.0);
    vec3 rgb = texelFetch(colours, ivec2(int(part * 255.0 + 0.5), 0), 0).rgb;
    vec2 d = vec2(slope(at(c - ivec2(1, 0)), at(c + ivec2(1, 0)), h), slope(at(c - ivec2(0, 1)), at(c + ivec2(0, 1)), h))
        * 0.5 / (range.y - range.x) * vec2(cells - 1) * size.y / size.zx;
    vec3 normal = normalize(turn * vec3(-d.y, 1.0, d.x));
    colour = vec4(lit ? rgb * (0.45 + 0.55 * max(0.0, dot(normal, normalize(vec3(-0.4, 0.6, 0.7))))) : rgb, 1);
}`;

class Surface {
    /// Throws when there is no WebGL 2.
    constructor(host, map, range) {
        [this.map, this.range, this.layer] = [map, range, map.values];
        this.lit = true;
        this.eye = new Eye(host, {yaw: -0.6, pitch: 0.7, lowest: 0}, () => this.draw());
        const {tools} = this.eye;
        this.tall = addInput(tools, "Height", {type: "range", min: "2", max: "100", value: "30"}, () => this.draw());
        addInput(tools, "Light", {type: "checkbox", checked: ""}, (input) => {
            this.lit = input.checked;
            this.draw();
        });
        this.canvas = add(host, "canvas", "", {tabindex: "0", role: "img", "aria-label": "Height map as a surface",
            "aria-describedby": "surface-help", id: "surface-canvas"});
        add(host, "p", Eye.HELP, {class: "help", id: "surface-help"});
        this.note = add(host, "p", "", {class: "help"});
        this.start();
        this.listen();
    }

    start() {
        const gl = this.gl = this.canvas.getContext("webgl2", {preserveDrawingBuffer: true, antialias: true});
        if (!gl) throw new Error("no WebGL 2");
        const program = gl.createProgram();
        for (const [kind, source] of [[gl.VERTEX_SHADER, VERTEX], [gl.FRAGMENT_SHADER, FRAGMENT]]) {
            const shader = gl.createShader(kind);
            gl.shaderSource(shader, source);
            gl.compileShader(shader);
            gl.attachShader(program, shader);
        }
        gl.linkProgram(program);
        if (!gl.getProgramParameter(program, gl.LINK_STATUS)) throw new Error(gl.getProgramInfoLog(program));
        gl.useProgram(program);
        this.at = (name) => gl.getUniformLocation(program, name);
        this.sizeTexture();
        this.fillTexture();
        this.makeMesh();
        gl.activeTexture(gl.TEXTURE1);
        gl.bindTexture(gl.TEXTURE_2D, gl.createTexture());
        gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA8, 256, 1, 0, gl.RGBA, gl.UNSIGNED_BYTE, new Uint8Array(palette.buffer));
        this.nearest(gl);
        gl.uniform1i(this.at("heights"), 0);
        gl.uniform1i(this.at("colours"), 1);
        gl.enable(gl.DEPTH_TEST);
    }

    nearest(gl) {
        for (const filter of [gl.TEXTURE_MIN_FILTER, gl.TEXTURE_MAG_FILTER]) gl.texParameteri(gl.TEXTURE_2D, filter, gl.NEAREST);
    }

    /// Every how many cells a texture can hold.
    sizeTexture() {
        const {map, gl} = this, most = gl.getParameter(gl.MAX_TEXTURE_SIZE);
        this.stride = Math.ceil(Math.max(map.rows, map.columns) / most);
        this.cells = [Math.ceil(map.columns / this.stride), Math.ceil(map.rows / this.stride)];
    }

    fillTexture() {
        const {map, gl, stride, cells: [wide, high]} = this;
        const heights = new Float32Array(wide * high);
        for (let r = 0, i = 0; r < high; r++) {
            for (let c = 0; c < wide; c++, i++) {
                const value = this.layer[r * stride * map.columns + c * stride];
                heights[i] = value === value ? value : -1e30;
            }
        }
        gl.activeTexture(gl.TEXTURE0);
        gl.bindTexture(gl.TEXTURE_2D, gl.createTexture());
        gl.texImage2D(gl.TEXTURE_2D, 0, gl.R32F, wide, high, 0, gl.RED, gl.FLOAT, heights);
        this.nearest(gl);
    }

    makeMesh() {
        const {gl, cells: [wide, high]} = this;
        const thin = Math.max(1, Math.sqrt(wide * high / MESH));
        const [n, m] = this.mesh = [Math.max(2, Math.floor(wide / thin)), Math.max(2, Math.floor(high / thin))];
        const corners = new Uint32Array(6 * (n - 1) * (m - 1));
        for (let r = 0, i = 0; r + 1 < m; r++) {
            for (let c = 0; c + 1 < n; c++) {
                const a = r * n + c;
                for (const corner of [a, a + 1, a + n, a + 1, a + n + 1, a + n]) corners[i++] = corner;
            }
        }
        this.corners = corners.length;
        gl.bindBuffer(gl.ELEMENT_ARRAY_BUFFER, gl.createBuffer());
        gl.bufferData(gl.ELEMENT_ARRAY_BUFFER, corners, gl.STATIC_DRAW);
        const share = thin > 1 ? `The shape is drawn from ${n} \u00d7 ${m} of the cells, the colours from ` : "Drawn from ";
        this.note.textContent = share + (this.stride > 1 ? `every ${this.stride}th cell of each row and column.` : "all cells.");
    }

    /// The sides of the box: lengths to scale where both are known.
    box() {
        const {map} = this;
        const wide = map.isLength ? map.rows * map.pitchZ : 1.6, deep = map.isLength ? map.columns * map.pitchX : 1;
        const most = Math.max(wide, deep);
        return [Math.max(0.25, wide / most) * 1.5, this.tall.valueAsNumber / 100, Math.max(0.25, deep / most) * 1.5];
    }

    draw() {
        const {gl, canvas} = this, ratio = window.devicePixelRatio || 1;
        if (!canvas.clientWidth || gl.isContextLost()) return;
        [canvas.width, canvas.height] = [canvas.clientWidth * ratio, canvas.clientHeight * ratio];
        gl.viewport(0, 0, canvas.width, canvas.height);
        const {cy, sy, cp, sp} = this.eye.angles();
        gl.uniformMatrix3fv(this.at("turn"), false, [cy, sp * sy, -cp * sy, 0, cp, sp, sy, -sp * cy, cp * cy]);
        const aspect = canvas.width / canvas.height, s = this.eye.scale * (aspect < 1 ? aspect : 1);
        gl.uniform2f(this.at("view"), s / aspect, s);
        gl.uniform3fv(this.at("size"), this.box());
        gl.uniform2f(this.at("range"), this.range.min, this.range.max > this.range.min ? this.range.max : this.range.min + 1);
        gl.uniform2iv(this.at("cells"), this.cells);
        gl.uniform1i(this.at("lit"), this.lit ? 1 : 0);
        gl.clearColor(0, 0, 0, 0);
        gl.clear(gl.COLOR_BUFFER_BIT | gl.DEPTH_BUFFER_BIT);
        gl.uniform1i(this.at("base"), 1);
        gl.uniform2i(this.at("mesh"), 2, 2);
        gl.drawArrays(gl.TRIANGLE_STRIP, 0, 4);
        gl.uniform1i(this.at("base"), 0);
        gl.uniform2iv(this.at("mesh"), this.mesh);
        gl.drawElements(gl.TRIANGLES, this.corners, gl.UNSIGNED_INT, 0);
    }

    /// Waits until the picture is there.
    finish() {
        this.gl.readPixels(0, 0, 1, 1, this.gl.RGBA, this.gl.UNSIGNED_BYTE, new Uint8Array(4));
    }

    show(layer, range) {
        if (layer !== this.layer) {
            this.layer = layer;
            this.fillTexture();
        }
        this.range = range;
        this.draw();
    }

    listen() {
        const {canvas} = this;
        canvas.addEventListener("webglcontextlost", (event) => event.preventDefault());
        canvas.addEventListener("webglcontextrestored", () => {
            this.start();
            this.draw();
        });
        new ResizeObserver(() => this.draw()).observe(canvas);
        this.eye.listen(canvas);
    }
}
