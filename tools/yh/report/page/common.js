// What every view of the report shares: loading data scripts, drawing texts
// and elements, links to copied files, pagers. Every text of the backup is set
// with textContent or as an attribute value, never parsed as markup; links
// lead only to http(s) addresses and to the copied files.
'use strict';

window.YH = (function () {
  const CONTROLS = /[\u0000-\u0008\u000b\u000c\u000e-\u001f\u007f]/g;
  const PICTURES = /\.(jpe?g|png|gif|webp|bmp|avif)$/i;
  const SOUNDS = /\.(m4a|mp3|wav|aac|caf|ogg|oga|opus|flac)$/i;
  const VIDEOS = /\.(mov|mp4|m4v|webm|3gp)$/i;
  const loaded = new Map();
  const pending = new Map();

  // Called by each data script.
  window.yhData = function (name, data) {
    loaded.set(name, data);
    const waiter = pending.get(name);
    if (waiter) waiter.resolve(data);
  };

  // A data script, loaded once; rejected when the file is missing.
  function load(name) {
    if (loaded.has(name)) return Promise.resolve(loaded.get(name));
    if (!/^[a-z0-9-]+$/.test(name)) return Promise.reject(new Error('bad data name'));
    if (!pending.has(name)) {
      const waiter = {};
      waiter.promise = new Promise(function (resolve, reject) {
        waiter.resolve = resolve;
        waiter.reject = reject;
      });
      pending.set(name, waiter);
      const script = document.createElement('script');
      script.src = 'data/' + name + '.js';
      script.addEventListener('error', function () {
        pending.delete(name);
        waiter.reject(new Error('missing data/' + name + '.js'));
      });
      document.body.appendChild(script);
    }
    return pending.get(name).promise;
  }

  // Shown as it is, control characters as their visible symbols.
  function text(value) {
    if (value === null || value === undefined) return '';
    const plain = typeof value === 'object' ? JSON.stringify(value) : String(value);
    return plain.replace(CONTROLS, function (c) {
      const code = c.charCodeAt(0);
      return String.fromCharCode(code === 0x7f ? 0x2421 : 0x2400 + code);
    });
  }

  // An element with properties and children; strings become text nodes.
  function el(tag, props, ...children) {
    const node = document.createElement(tag);
    Object.assign(node, props || {});
    for (const child of children) {
      if (child === null || child === undefined) continue;
      node.append(typeof child === 'string' ? document.createTextNode(child) : child);
    }
    return node;
  }

  function isWebAddress(value) {
    return typeof value === 'string' && /^https?:\/\//i.test(value);
  }

  // A link to a file of the report's own folder (a copy "media/<kind>/<name>"
  // or a preview made of one, "previews/<kind>/<name>"), each part
  // URL-encoded; null for anything else.
  function fileHref(relative) {
    if (typeof relative !== 'string' || !/^(media|previews)\/[^/]+\/[^/]+$/.test(relative)) return null;
    return relative.split('/').map(encodeURIComponent).join('/');
  }

  // The name a record's copy goes by: the copy's own name, else the name
  // the record gives.
  function fileName(record) {
    const copy = typeof record.exported_path === 'string' ? record.exported_path.split('/').pop() : '';
    return text(copy || record.original_name || record.file_name || record.name);
  }

  // A record names a file that the backup does not hold.
  function isMissing(record) {
    return record.present === false || (typeof record.path === 'string' && record.path === '');
  }

  // Where a recovered record was found, in words.
  const DELETED_FROM = {
    'recently-deleted': 'what the device keeps after a deletion (Recently Deleted)',
    'wal': 'the database\u2019s write-ahead log',
    'freelist': 'a free page of the database',
    'freeblock': 'free space in a page of the database',
    'unallocated': 'unallocated space in a page of the database',
    'journal': 'the database\u2019s rollback journal',
  };

  // A record the owner deleted, or an earlier version of a live one: it
  // carries the keys of its deletion.
  function isDeleted(record) {
    return !!record && typeof record.deleted_from === 'string';
  }

  // "Deleted · wal" (or "Earlier version · wal"), saying on hover where the
  // record was found and when it was deleted.
  function deletedMark(record) {
    const label = (record.earlier_version === true ? 'Earlier version' : 'Deleted') + ' · ' + text(record.deleted_from);
    const where = DELETED_FROM[record.deleted_from] || text(record.deleted_from);
    const when = text(record.deleted_date);
    return el('span', {className: 'deleted-mark', title: 'Recovered from ' + where + (when ? '; deleted ' + when : '')},
        label);
  }

  // "N of M <what>", with a box that keeps only those records; null when
  // no record `holds`. The paragraph is #ID, its box #ID-only.
  function filterNote(records, holds, what, id, keepOnly) {
    const count = records.filter(function (record) { return record && holds(record); }).length;
    if (!count) return null;
    const box = el('input', {type: 'checkbox', id: id + '-only'});
    box.addEventListener('change', function () { keepOnly(box.checked); });
    return el('p', {className: id, id: id}, count + ' of ' + records.length + ' ' + what,
        el('label', null, box, ' Show only these'));
  }

  // Makes `nodes` the page's content; nulls are left out.
  function show(...nodes) {
    document.getElementById('main').replaceChildren(...nodes.filter(function (node) { return node; }));
    window.scrollTo(0, 0);
  }

  function note(message) {
    return el('p', {className: 'note'}, message);
  }

  function failed(error) {
    show(note('This part of the report cannot be shown: ' + error.message));
  }

  // Previous and next, where the rows stand, and a page to jump to.
  function drawPager(pager, page, total, size, go) {
    const pages = Math.max(1, Math.ceil(total / size));
    const previous = el('button', {type: 'button', disabled: page === 0}, '‹ Previous');
    const next = el('button', {type: 'button', disabled: page >= pages - 1}, 'Next ›');
    previous.addEventListener('click', function () { go(page - 1); });
    next.addEventListener('click', function () { go(page + 1); });
    const first = total ? page * size + 1 : 0;
    const last = Math.min(total, (page + 1) * size);
    const jump = el('input', {type: 'number', min: 1, max: pages, value: page + 1, className: 'jump',
      title: 'Go to page'});
    jump.setAttribute('aria-label', 'Go to page');
    jump.addEventListener('change', function () {
      const wanted = Math.min(pages, Math.max(1, Math.round(Number(jump.value)) || 1));
      go(wanted - 1);
    });
    pager.replaceChildren(previous, el('span', {className: 'position'}, first + '–' + last + ' of ' + total), next,
        el('label', {className: 'page'}, 'Page ', jump, ' of ' + pages));
  }

  // Dates as the library writes them ("YYYY-MM-DD hh:mm:ss") sort as texts;
  // records without a date go last either way.
  function byDate(newestFirst, dateOf) {
    return function (a, b) {
      const x = dateOf(a);
      const y = dateOf(b);
      if (!x || !y) return (x ? 0 : 1) - (y ? 0 : 1);
      return newestFirst ? y.localeCompare(x) : x.localeCompare(y);
    };
  }

  // Digits of a phone number, so that "+44 20 7946 0018" is found as "442079460018".
  function digits(value) {
    return String(value).replace(/\D+/g, '');
  }

  // What a search box asks for: the lower-case text and, for a number, its digits.
  function query(input) {
    const wanted = input.value.trim().toLowerCase();
    const number = /^[\d\s()+.\-/]+$/.test(wanted) && digits(wanted).length >= 3 ? digits(wanted) : '';
    return {text: wanted, digits: number};
  }

  function matches(wanted, haystack, numbers) {
    if (!wanted.text) return true;
    return haystack.includes(wanted.text) || (wanted.digits !== '' && numbers.includes(wanted.digits));
  }

  return {PICTURES, SOUNDS, VIDEOS, load, text, el, isWebAddress, fileHref, fileName, isMissing, isDeleted,
    deletedMark, filterNote, show, note, failed, drawPager, byDate, digits, query, matches};
})();
