#!/usr/bin/env node
// The independent reader of our exported files: each GEDCOM file named on the command line is
// read by read-gedcom, a reader written by others, which must accept it: every line
// tokenized, levels nested, CONT and CONC under a line, HEAD first, TRLR last and only once,
// no record pointer defined twice. Prints one line per rejected file and ends with status 1
// when any was rejected, 2 on a usage error. With --stdin it reads one file name per line
// instead and answers each with one line, "ok" or why it rejects the file, so that a program
// that checks many files starts it once.
'use strict';

const fs = require('fs');
const { parseGedcom } = require('read-gedcom');

const files = process.argv.slice(2);
if (files.length === 1 && files[0] === '--stdin') {
  const lines = require('readline').createInterface({ input: process.stdin });
  lines.on('line', (file) => {
    const why = rejection(file);
    process.stdout.write(why ? `${why}\n` : 'ok\n');
  });
  return;
}
if (files.length === 0) {
  console.error('usage: check.js FILE.ged...');
  process.exit(2);
}

function problem(root) {
  const trailers = root.children.filter((node) => node.tag === 'TRLR').length;
  if (trailers !== 1) return `${trailers} trailers`;
  return null;
}

function rejection(file) {
  try {
    const bytes = fs.readFileSync(file);
    const buffer = bytes.buffer.slice(bytes.byteOffset, bytes.byteOffset + bytes.byteLength);
    return problem(parseGedcom(buffer));
  } catch (error) {
    return `${error.constructor.name}: ${error.message}`;
  }
}

let rejected = 0;
for (const file of files) {
  const why = rejection(file);
  if (why) {
    console.log(`${file}: ${why}`);
    rejected += 1;
  }
}
process.exit(rejected === 0 ? 0 : 1);
