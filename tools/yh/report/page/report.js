// Draws the report from the data scripts beside it. Every text of the backup
// is set with textContent or as an attribute value, never parsed as markup;
// links lead only to http(s) addresses and to the copied files.
'use strict';

(function () {
  const PAGE_ROWS = 250;
  const PAGE_TILES = 240;
  const THREAD_STEP = 200;
  const PICTURES = /\.(jpe?g|png|gif|webp|bmp|avif)$/i;
  const CONTROLS = /[\u0000-\u0008\u000b\u000c\u000e-\u001f\u007f]/g;

  // Columns of each table: [key, heading, how the cell is drawn].
  const CALENDAR = [['title', 'Title'], ['start_date', 'Start'], ['end_date', 'End'], ['location', 'Location'],
    ['description', 'Description'], ['url', 'Address'], ['all_day', 'All day'], ['status', 'Status']];
  const KINDS = {
    'calls': {label: 'Calls', view: 'table', columns: [['name', 'Name'], ['address', 'Number or address'],
      ['date', 'Date'], ['type', 'Type'], ['duration', 'Duration'], ['location', 'Location'],
      ['network_code', 'Service']]},
    'contacts': {label: 'Contacts', view: 'table', columns: [['name', 'Name'], ['organization', 'Organization'],
      ['jobTitle', 'Job title'], ['nickName', 'Nickname'], ['properties', 'Numbers and addresses', 'properties'],
      ['birthday', 'Birthday'], ['note', 'Note'], ['creationDate', 'Created']]},
    'messages': {label: 'Conversations', card: 'Messages', view: 'threads'},
    'attachments': {label: 'Attachments', view: 'grid'},
    'notes': {label: 'Notes', view: 'table', columns: [['title', 'Title'], ['modify_date', 'Modified'],
      ['create_date', 'Created'], ['body', 'Text', 'long']]},
    'safari': {label: 'Safari', view: 'table', columns: [['title', 'Title'], ['url', 'Address', 'link'],
      ['type', 'Type'], ['lastVisitedDate', 'Last visit'], ['visitCount', 'Visits']]},
    'events': {label: 'Events', view: 'table', columns: CALENDAR},
    'reminders': {label: 'Reminders', view: 'table', columns: CALENDAR},
    'recordings': {label: 'Voice memos', view: 'table', columns: [['title', 'Title'], ['date', 'Date'],
      ['duration', 'Duration'], ['name', 'File', 'file'], ['audio', 'Play', 'audio']]},
    'camera-photos': {label: 'Camera photos', view: 'grid'},
    'other-photos': {label: 'Other photos', view: 'grid'},
    'voicemail': {label: 'Voicemail', view: 'table', columns: [['name', 'Name'], ['address', 'Number'],
      ['date', 'Date'], ['duration', 'Duration'], ['heard', 'Heard'], ['deleted', 'Deleted'],
      ['file_name', 'File', 'file']]},
    'whatsapp': {label: 'WhatsApp', view: 'threads'},
    'whatsapp-calls': {label: 'WhatsApp calls', view: 'table', columns: [['name', 'Name'], ['address', 'Number'],
      ['date', 'Date'], ['type', 'Type'], ['duration', 'Duration'], ['service', 'Service'],
      ['answered', 'Answered']]},
  };

  const loaded = new Map();
  const pending = new Map();

  // Called by each data script.
  window.yhData = function (name, data) {
    loaded.set(name, data);
    const waiter = pending.get(name);
    if (waiter) waiter.resolve(data);
    if (name === 'overview') start();
  };

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
      script.addEventListener('error', function () { waiter.reject(new Error('missing data/' + name + '.js')); });
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

  function fileHref(kind, name) {
    return 'media/' + encodeURIComponent(kind) + '/' + encodeURIComponent(name);
  }

  function show(...nodes) {
    const main = document.getElementById('main');
    main.replaceChildren(...nodes);
    window.scrollTo(0, 0);
  }

  function failed(error) {
    show(el('p', {className: 'note'}, 'This part of the report cannot be shown: ' + error.message));
  }

  function start() {
    const overview = loaded.get('overview');
    const nav = document.getElementById('nav');
    nav.replaceChildren(...overview.kinds.filter(function (kind) { return KINDS[kind.name]; }).map(function (kind) {
      return el('a', {href: '#kind/' + kind.name}, KINDS[kind.name].label);
    }));
    const name = overview.device.deviceName || overview.device.folder;
    document.title = 'Backup report: ' + text(name);
    window.addEventListener('hashchange', route);
    route();
  }

  function route() {
    const hash = decodeURIComponent(location.hash.slice(1));
    const parts = hash.split('/');
    if (parts[0] === 'kind' && KINDS[parts[1]]) return showKind(parts[1]);
    if (parts[0] === 'thread' && /^\d+$/.test(parts[1])) return showThread('messages', Number(parts[1]));
    if (parts[0] === 'thread' && KINDS[parts[1]] && /^\d+$/.test(parts[2])) {
      return showThread(parts[1], Number(parts[2]));
    }
    showOverview();
  }

  function showKind(kind) {
    show(el('p', {className: 'note'}, 'Loading…'));
    load(kind).then(function (data) {
      const view = KINDS[kind].view;
      if (view === 'threads') return showThreads(kind, data.threads);
      if (view === 'grid') return showGrid(kind, data);
      showTable(kind, data);
    }).catch(failed);
  }

  // The device and each kind with its count.
  function showOverview() {
    const overview = loaded.get('overview');
    const device = overview.device;
    const facts = [['Device', device.deviceName], ['Model', [device.productName, device.productType]
      .filter(Boolean).join(', ')], ['iOS version', device.productVersion], ['Serial number', device.serialNumber],
    ['Backup date', device.lastBackupDate], ['Encrypted', device.encrypted ? 'yes' : 'no'],
    ['Backup folder', device.folder], ['Index', device.index]];
    const list = el('dl', {className: 'facts'});
    for (const [label, value] of facts) list.append(el('dt', null, label), el('dd', null, text(value)));
    const cards = el('div', {className: 'cards', id: 'kinds'});
    for (const kind of overview.kinds) {
      if (!KINDS[kind.name]) continue;
      const count = kind.messages === null || kind.messages === undefined ? kind.records : kind.messages;
      const detail = kind.messages === null || kind.messages === undefined ? '' : kind.records + ' conversations';
      cards.append(el('a', {className: 'card', href: '#kind/' + kind.name},
          el('span', {className: 'count', title: kind.name}, String(count)),
          el('span', {className: 'label'}, KINDS[kind.name].card || KINDS[kind.name].label),
          el('span', {className: 'detail'}, detail || (kind.skipped ? kind.skipped + ' files missing' : ''))));
      cards.lastChild.dataset.kind = kind.name;
    }
    show(el('h1', null, text(device.deviceName || device.folder)), list, cards);
  }

  // Conversations: name, last message, count; filtered by a search box.
  // Those of Messages keep their first addresses, #thread/N.
  function threadLink(kind, index) {
    return '#thread/' + (kind === 'messages' ? '' : kind + '/') + index;
  }

  function showThreads(kind, threads) {
    const items = threads.map(function (thread, index) {
      const name = text(thread.another || thread.phone || thread.id);
      const last = thread.last || {};
      return {index: index, name: name, last: text(last.text), date: text(last.date), count: thread.count,
        search: (name + ' ' + text(thread.phone) + ' ' + text(thread.id)).toLowerCase()};
    });
    const list = el('ol', {className: 'threads', id: 'threads'});
    const pager = el('div', {className: 'pager'});
    const search = el('input', {type: 'search', placeholder: 'Search conversations', id: 'search'});
    let page = 0;
    function draw() {
      const wanted = search.value.toLowerCase();
      const kept = wanted ? items.filter(function (item) { return item.search.includes(wanted); }) : items;
      page = Math.min(page, Math.max(0, Math.ceil(kept.length / PAGE_ROWS) - 1));
      const rows = kept.slice(page * PAGE_ROWS, (page + 1) * PAGE_ROWS).map(function (item) {
        return el('li', null, el('a', {href: threadLink(kind, item.index)},
            el('span', {className: 'name'}, item.name),
            el('span', {className: 'count'}, String(item.count)),
            el('span', {className: 'last'}, item.last),
            el('span', {className: 'date'}, item.date)));
      });
      // A kind without conversations still shows its (empty) list.
      list.replaceChildren(...(rows.length ? rows : [el('li', {className: 'note'}, 'No conversations')]));
      drawPager(pager, page, kept.length, PAGE_ROWS, function (next) { page = next; draw(); });
    }
    search.addEventListener('input', function () { page = 0; draw(); });
    draw();
    show(el('h1', null, KINDS[kind].label), el('div', {className: 'tools'}, search), list, pager);
  }

  // One conversation as bubbles, the latest first loaded, earlier ones on demand.
  function showThread(kind, index) {
    show(el('p', {className: 'note'}, 'Loading…'));
    load(kind).then(function (data) {
      const thread = data.threads[index];
      if (!thread) throw new Error('no such conversation');
      return load(thread.data).then(function (chat) { drawThread(kind, thread, chat); });
    }).catch(failed);
  }

  function drawThread(kind, thread, chat) {
    const messages = Array.isArray(chat.message) ? chat.message : [];
    const box = el('div', {className: 'bubbles', id: 'bubbles'});
    const earlier = el('button', {type: 'button', className: 'earlier'}, 'Show earlier messages');
    let shown = 0;
    function more() {
      const from = Math.max(0, messages.length - shown - THREAD_STEP);
      const to = messages.length - shown;
      const nodes = messages.slice(from, to).map(bubble);
      box.prepend(...nodes);
      shown = messages.length - from;
      earlier.hidden = from === 0;
    }
    earlier.addEventListener('click', more);
    more();
    const title = text(thread.another || thread.phone || thread.id);
    const who = [thread.phone, thread.id].filter(function (value, i, all) {
      return value && value !== thread.another && all.indexOf(value) === i;
    }).map(text).join(', ');
    show(el('p', null, el('a', {href: '#kind/' + kind}, '← ' + KINDS[kind].label)), el('h1', null, title),
        el('p', {className: 'note'}, who + (who ? ' · ' : '') + messages.length + ' messages'), earlier, box);
    window.scrollTo(0, document.body.scrollHeight);
  }

  function bubble(message) {
    const sent = Number(message.type) === 1;
    const body = text(message.text);
    const content = body === '\ufffc'
      ? el('a', {className: 'attachment', href: '#kind/attachments'}, 'Attachment')
      : el('p', null, body);
    return el('div', {className: 'bubble ' + (sent ? 'sent' : 'received')}, content,
        el('span', {className: 'meta'}, [text(message.date), text(message.service)].filter(Boolean).join(' · ')));
  }

  // Pictures as lazily loaded thumbnails, other files as linked tiles.
  function showGrid(kind, data) {
    const records = Array.isArray(data.records) ? data.records : [];
    const files = Array.isArray(data.files) ? data.files : [];
    const grid = el('div', {className: 'grid', id: 'grid'});
    const pager = el('div', {className: 'pager'});
    let page = 0;
    function draw() {
      const from = page * PAGE_TILES;
      grid.replaceChildren(...records.slice(from, from + PAGE_TILES).map(function (record, i) {
        return tile(kind, record, files[from + i]);
      }));
      drawPager(pager, page, records.length, PAGE_TILES, function (next) { page = next; draw(); });
    }
    draw();
    show(el('h1', null, KINDS[kind].label), grid, pager);
  }

  function tile(kind, record, copy) {
    const name = text(record.file_name || record.name);
    const caption = el('figcaption', null, el('span', null, name), el('span', {className: 'date'},
        text(record.date || record.creation_date)));
    if (typeof copy !== 'string') {
      return el('figure', {className: 'tile missing'}, el('div', {className: 'box'}, 'not copied'), caption);
    }
    const href = fileHref(kind, copy);
    const extension = (copy.match(/\.([^.]{1,8})$/) || ['', 'file'])[1].toUpperCase();
    const link = el('a', {href: href, className: 'box'});
    if (PICTURES.test(copy)) {
      const picture = el('img', {src: href, alt: name, loading: 'lazy', decoding: 'async'});
      picture.addEventListener('error', function () { link.replaceChildren(extension); });
      link.append(picture);
    } else {
      link.append(extension);
    }
    return el('figure', {className: 'tile'}, link, caption);
  }

  // A table sorted by any column and filtered by a search box, one page drawn at a time.
  function showTable(kind, data) {
    const columns = KINDS[kind].columns;
    const records = Array.isArray(data.records) ? data.records : [];
    const files = Array.isArray(data.files) ? data.files : [];
    const rows = records.map(function (record, i) {
      const values = columns.map(function ([key, , how]) { return cellValue(record, key, how); });
      return {record: record, file: files[i], values: values, search: values.join('\u0001').toLowerCase()};
    });
    const search = el('input', {type: 'search', placeholder: 'Search ' + KINDS[kind].label.toLowerCase(),
      id: 'search'});
    const head = el('tr');
    const body = el('tbody');
    const pager = el('div', {className: 'pager'});
    const state = {column: -1, ascending: true, page: 0};
    let kept = rows;
    columns.forEach(function ([key, heading, how], index) {
      const button = el('button', {type: 'button'}, heading);
      const cell = el('th', {scope: 'col'}, button);
      cell.dataset.key = key;
      if (how === 'audio') {
        cell.replaceChildren(heading);
      } else {
        button.addEventListener('click', function () {
          state.ascending = state.column === index ? !state.ascending : true;
          state.column = index;
          sortRows();
          draw();
        });
      }
      head.append(cell);
    });
    function sortRows() {
      const index = state.column;
      const sign = state.ascending ? 1 : -1;
      kept.sort(function (a, b) { return sign * compare(a.values[index], b.values[index]); });
      head.querySelectorAll('th').forEach(function (cell, i) {
        if (i === index) cell.setAttribute('aria-sort', state.ascending ? 'ascending' : 'descending');
        else cell.removeAttribute('aria-sort');
      });
    }
    function filter() {
      const wanted = search.value.toLowerCase();
      kept = wanted ? rows.filter(function (row) { return row.search.includes(wanted); }) : rows.slice();
      if (state.column >= 0) sortRows();
      state.page = 0;
      draw();
    }
    function draw() {
      const from = state.page * PAGE_ROWS;
      body.replaceChildren(...kept.slice(from, from + PAGE_ROWS).map(function (row) {
        return el('tr', null, ...columns.map(function ([key, , how], i) {
          return el('td', null, cell(kind, row, key, how, row.values[i]));
        }));
      }));
      drawPager(pager, state.page, kept.length, PAGE_ROWS, function (next) { state.page = next; draw(); });
    }
    search.addEventListener('input', filter);
    kept = rows.slice();
    draw();
    show(el('h1', null, KINDS[kind].label), el('div', {className: 'tools'}, search),
        el('div', {className: 'scroll'}, el('table', {id: 'table'}, el('thead', null, head), body)), pager);
  }

  function cellValue(record, key, how) {
    if (how === 'properties') {
      const list = Array.isArray(record.properties) ? record.properties : [];
      return list.map(function (p) { return text(p && p.label) + ': ' + text(p && p.value); }).join('\n');
    }
    if (how === 'audio') return '';
    const value = record[key];
    return typeof value === 'number' ? value : text(value);
  }

  function compare(a, b) {
    if (typeof a === 'number' && typeof b === 'number') return a - b;
    return String(a).localeCompare(String(b), undefined, {numeric: true});
  }

  function cell(kind, row, key, how, value) {
    if (how === 'link' && isWebAddress(value)) {
      return el('a', {href: value, rel: 'noreferrer noopener', target: '_blank'}, value);
    }
    if (how === 'file' || how === 'audio') {
      if (typeof row.file !== 'string') return how === 'file' ? el('span', {className: 'note'}, 'not copied') : null;
      const href = fileHref(kind, row.file);
      if (how === 'audio') return el('audio', {controls: true, preload: 'none', src: href});
      return el('a', {href: href}, text(row.file));
    }
    return el('span', {className: how === 'long' ? 'long' : ''}, String(value));
  }

  function drawPager(pager, page, total, size, go) {
    const pages = Math.max(1, Math.ceil(total / size));
    const previous = el('button', {type: 'button', disabled: page === 0}, '‹ Previous');
    const next = el('button', {type: 'button', disabled: page >= pages - 1}, 'Next ›');
    previous.addEventListener('click', function () { go(page - 1); });
    next.addEventListener('click', function () { go(page + 1); });
    const first = total ? page * size + 1 : 0;
    const last = Math.min(total, (page + 1) * size);
    pager.replaceChildren(previous, el('span', {className: 'position'}, first + '–' + last + ' of ' + total), next);
  }
})();
