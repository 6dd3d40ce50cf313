// Makes the shapes of IFC files for the Workbench, which runs this as a child process.
//
// Standard input: one request for each file, the bytes of its path and a zero byte. The end of the input
// ends the process. Standard output: frames of three 32-bit numbers - the bytes "MSH1", the kind, the size
// of the payload - and the payload. Everything is little-endian:
//
//   1 element   u64 record, f64[3] origin, u32 number of parts, then for each part
//               f32[4] colour, u32 number of vertices, u32 number of indices, f32[3] each vertex, u32 each index
//   2 failed    u64 record, UTF-8 reason
//   3 progress  u32 elements done, u32 elements in all
//   4 refused   UTF-8 reason; ends the file
//   5 done      ends the file
//
// Space is Z-up and in metres, vertices are relative to the element's origin. Standard error is for people.

import { closeSync, fstatSync, openSync, readSync, writeSync } from 'node:fs';
import * as WebIfc from 'web-ifc';

const magic = Buffer.from('MSH1');
const kind = { element: 1, failed: 2, progress: 3, refused: 4, done: 5 };
const notShown = new Set([WebIfc.IFCOPENINGELEMENT, WebIfc.IFCOPENINGSTANDARDCASE, WebIfc.IFCSPACE]);
const flushBytes = 256 * 1024;
const flushMilliseconds = 50;
const restartsAtMost = 20;

// Libraries print through the console; standard output belongs to the frames.
console.log = console.info = console.debug = console.warn = console.error;

function writeWhole(bytes) {
  for (let from = 0; from < bytes.length; ) from += writeSync(1, bytes, from);
}

function frame(kindNumber, ...payload) {
  const head = Buffer.alloc(12);
  magic.copy(head);
  head.writeUInt32LE(kindNumber, 4);
  head.writeUInt32LE(payload.reduce((sum, piece) => sum + piece.length, 0), 8);
  return [head, ...payload];
}

function numbers(...values) {
  const bytes = Buffer.alloc(4 * values.length);
  values.forEach((value, at) => bytes.writeUInt32LE(value >>> 0, 4 * at));
  return bytes;
}

function recordBytes(record) {
  const bytes = Buffer.alloc(8);
  bytes.writeBigUInt64LE(BigInt(record));
  return bytes;
}

const bytesOf = (array) => Buffer.from(array.buffer, array.byteOffset, array.byteLength);

async function startLibrary() {
  const library = new WebIfc.IfcAPI();
  await library.Init();
  library.SetLogLevel(WebIfc.LogLevel.LOG_LEVEL_OFF);
  return library;
}

function openModel(library, file) {
  let model = -1;
  try {
    model = library.OpenModelFromCallback((offset, size) => {
      const bytes = new Uint8Array(size);
      return bytes.subarray(0, readSync(file, bytes, 0, size, offset));
    });
  } catch (error) {
    if (error instanceof WebAssembly.RuntimeError || error.code) throw error;
    console.error(error);  // the library trips over a missing header
  }
  if (model < 0) throw new Error('it is no IFC file, or its header or schema is not known');
  return model;
}

function elementsOf(library, model) {
  const records = [];
  for (const type of library.GetIfcEntityList(model)) {
    if (!library.IsIfcElement(type) || notShown.has(type)) continue;
    const lines = library.GetLineIDsWithType(model, type);
    for (let at = 0; at < lines.size(); ++at) records.push(lines.get(at));
  }
  return records.sort((a, b) => a - b);
}

// The library's matrices are column-major and lead to a Y-up space.
const originOf = (matrix) => [matrix[12], -matrix[14], matrix[13]];

function place(vertices, matrix, origin) {
  const count = vertices.length / 6;  // a position and a normal each
  const positions = new Float32Array(3 * count);
  const [offsetX, offsetY, offsetZ] = originOf(matrix).map((value, axis) => value - origin[axis]);
  for (let at = 0; at < count; ++at) {
    const x = vertices[6 * at];
    const y = vertices[6 * at + 1];
    const z = vertices[6 * at + 2];
    positions[3 * at] = matrix[0] * x + matrix[4] * y + matrix[8] * z + offsetX;
    positions[3 * at + 1] = -(matrix[2] * x + matrix[6] * y + matrix[10] * z) + offsetY;
    positions[3 * at + 2] = matrix[1] * x + matrix[5] * y + matrix[9] * z + offsetZ;
  }
  return positions;
}

// The element's frame, or null when it has no shape.
function elementFrame(library, model, record) {
  const placed = library.GetFlatMesh(model, record).geometries;
  let origin = null;
  const parts = [];
  for (let at = 0; at < placed.size(); ++at) {
    const { color, flatTransformation, geometryExpressID } = placed.get(at);
    const geometry = library.GetGeometry(model, geometryExpressID);
    const vertices = library.GetVertexArray(geometry.GetVertexData(), geometry.GetVertexDataSize());
    const indices = library.GetIndexArray(geometry.GetIndexData(), geometry.GetIndexDataSize()).slice();
    if (indices.length > 0) {
      origin ??= originOf(flatTransformation);
      const positions = place(vertices, flatTransformation, origin);
      parts.push(
        bytesOf(new Float32Array([color.x, color.y, color.z, color.w])),
        numbers(positions.length / 3, indices.length),
        bytesOf(positions),
        bytesOf(indices),
      );
    }
    geometry.delete();
  }
  if (!origin) return null;
  return frame(kind.element, recordBytes(record), bytesOf(new Float64Array(origin)), numbers(parts.length / 4), ...parts);
}

class Output {
  pending = [];
  size = 0;
  last = Date.now();

  add(pieces) {
    this.pending.push(...pieces);
    for (const piece of pieces) this.size += piece.length;
  }

  progress(done, total) {
    if (this.size < flushBytes && Date.now() - this.last < flushMilliseconds && done < total) return;
    this.add(frame(kind.progress, numbers(done, total)));
    this.flush();
  }

  flush() {
    writeWhole(Buffer.concat(this.pending));
    this.pending = [];
    this.size = 0;
    this.last = Date.now();
  }
}

let library = await startLibrary();

async function meshFile(file, output) {
  let model = openModel(library, file);
  const records = elementsOf(library, model);
  let restarts = 0;
  for (const [at, record] of records.entries()) {
    try {
      const shape = elementFrame(library, model, record);
      if (shape) output.add(shape);
    } catch (error) {
      output.add(frame(kind.failed, recordBytes(record), Buffer.from(String(error))));
      // After a trap the library's memory is not to be trusted.
      if (error instanceof WebAssembly.RuntimeError) {
        if (++restarts > restartsAtMost) throw error;
        library = await startLibrary();
        model = openModel(library, file);
      }
    }
    output.progress(at + 1, records.length);
  }
  library.CloseModel(model);
}

async function serve(path) {
  const output = new Output();
  let file;
  try {
    file = openSync(path, 'r');
    if (fstatSync(file).size === 0) throw new Error('it is empty');
    await meshFile(file, output);
    output.add(frame(kind.done));
  } catch (error) {
    if (error instanceof WebAssembly.RuntimeError) library = await startLibrary();
    output.add(frame(kind.refused, Buffer.from(error.message ?? String(error))));
  } finally {
    if (file !== undefined) closeSync(file);
  }
  output.flush();
}

let input = Buffer.alloc(0);
for await (const bytes of process.stdin) {
  input = Buffer.concat([input, bytes]);
  for (let end; (end = input.indexOf(0)) >= 0; ) {
    const path = input.subarray(0, end);
    input = input.subarray(end + 1);
    await serve(path);
  }
}
