// node properties.mjs <folder of node_modules> <file.ifc> <set>: one line for each element and property of the sets
// of that name, as web-ifc reads them: "<element>|<property>|<class>|<values>", without the order of the file.
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { join } from 'node:path';

const [modules, file, setName] = process.argv.slice(2);
const { IfcAPI, LogLevel, IFCRELDEFINESBYPROPERTIES } = createRequire(join(modules, 'x'))('web-ifc');

const api = new IfcAPI();
await api.Init();
api.SetLogLevel(LogLevel.LOG_LEVEL_OFF);
const model = api.OpenModel(readFileSync(file));
const values = (property) =>
    ['NominalValue', 'ListValues', 'EnumerationValues', 'LowerBoundValue', 'SetPointValue', 'UpperBoundValue',
        'DefiningValues', 'DefinedValues']
        .flatMap((name) => property[name] ?? [])
        .map((one) => one.value)
        .join(';');
const lines = [];
const relations = api.GetLineIDsWithType(model, IFCRELDEFINESBYPROPERTIES);
for (let i = 0; i < relations.size(); ++i) {
    const { RelatingPropertyDefinition: set, RelatedObjects: elements } = api.GetLine(model, relations.get(i), true);
    if (set.Name.value !== setName) continue;
    for (const element of elements)
        for (const one of set.HasProperties)
            lines.push(`${element.Name.value}|${one.Name.value}|${one.constructor.name}|${values(one)}`);
}
api.CloseModel(model);
process.stdout.write(lines.sort().map((line) => `${line}\n`).join(''));
process.exit(0);
