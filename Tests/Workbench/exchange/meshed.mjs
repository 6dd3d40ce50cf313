// node meshed.mjs <folder of node_modules> <file.ifc>: one line for each product of the file that web-ifc finds a
// shape for, its GlobalId.
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join } from 'node:path';

const [modules, file] = process.argv.slice(2);
const { IfcAPI, LogLevel } = createRequire(join(modules, 'x'))('web-ifc');

const api = new IfcAPI();
await api.Init();
api.SetLogLevel(LogLevel.LOG_LEVEL_OFF);
const model = api.OpenModel(readFileSync(file));
const found = [];
api.StreamAllMeshes(model, (mesh) => {
    if (mesh.geometries.size() > 0) found.push(api.GetLine(model, mesh.expressID).GlobalId.value);
});
api.CloseModel(model);
process.stdout.write(found.sort().map((id) => `${id}\n`).join(''));
process.exit(0);
