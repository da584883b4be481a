// The numbers of the page: base64 of a zlib stream of codes, 7 bits per byte, the lowest first. Code 0 is a missing
// value; any other is 1 + twice the step from the value before it in its row (negative steps: twice their size less 1).

const view = JSON.parse(document.getElementById("view").textContent);

async function unpack(id) {
    const text = atob(document.getElementById(id).textContent);
    const packed = new Uint8Array(text.length);
    for (let i = 0; i < packed.length; i++) packed[i] = text.charCodeAt(i);
    const stream = new Blob([packed]).stream().pipeThrough(new DecompressionStream("deflate"));
    return new Uint8Array(await new Response(stream).arrayBuffer());
}

/// The codes of a block as whole numbers, without undoing the steps.
function codes(bytes) {
    const result = [];
    for (let at = 0; at < bytes.length;) {
        let code = 0, weight = 1, byte;
        do {
            byte = bytes[at++];
            code += (byte & 127) * weight;
            weight *= 128;
        } while (byte > 127);
        result.push(code);
    }
    return result;
}

/// The values of rows of these lengths, NaN where missing.
async function numbers(id, lengths) {
    const bytes = await unpack(id);
    const values = new Float64Array(lengths.reduce((sum, n) => sum + n, 0));
    let at = 0, next = 0;
    for (const length of lengths) {
        let last = 0;
        for (let i = 0; i < length; i++) {
            let code = 0, weight = 1, byte;
            do {
                byte = bytes[at++];
                code += (byte & 127) * weight;
                weight *= 128;
            } while (byte > 127);
            if (code > 0) {
                code -= 1;
                last += code % 2 ? -(code + 1) / 2 : code / 2;
                values[next] = last * view.resolution;
            } else {
                values[next] = NaN;
            }
            next++;
        }
    }
    return values;
}

/// The profiles of a view: points x, y of each.
async function readProfiles(packed) {
    const counts = codes(await unpack(packed.counts));
    const [x, y] = [await numbers(packed.x, counts), await numbers(packed.y, counts)];
    let at = 0;
    return counts.map((count, i) => {
        const profile = {name: packed.names[i] ?? "", z: packed.z?.[i], x: x.subarray(at, at + count),
                         y: y.subarray(at, at + count)};
        at += count;
        return profile;
    });
}

function rangeOf(...lists) {
    let min = Infinity, max = -Infinity;
    for (const values of lists) {
        for (const v of values) {
            if (v < min) min = v;
            if (v > max) max = v;
        }
    }
    return min <= max ? {min, max} : {min: 0, max: 1};
}
